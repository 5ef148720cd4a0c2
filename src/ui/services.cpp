#include "ui/services.h"

namespace sylvane {

OperationLongue::OperationLongue(Panneau& panneau, Boites& boites, const std::string& titre,
                                 const std::string& texte)
    : panneau_(panneau), titre_(titre) {
    interaction_.question = [&boites](int n) { return boites.Question(n, true); };
    interaction_.progres = [this](const std::string& t, const std::string& x) {
        if (!t.empty()) titre_ = t;
        panneau_.Montre(titre_, x);
    };
    interaction_.arret = [this] { return panneau_.Arret(); };
    panneau_.Montre(titre_, texte);
}

OperationLongue::~OperationLongue() { panneau_.Cache(); }

} // namespace sylvane
