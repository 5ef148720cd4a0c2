#include "app/choix_fiche_qt.h"

#include "app/formulaires.h"

#include <map>
#include <memory>

namespace sylvane {

namespace {

class ChoixFicheDialogues : public ChoixFiche {
  public:
    explicit ChoixFicheDialogues(ContexteQt& c) : c_(c) {}
    std::uint32_t Cree(const std::string&) override { return 0; }
    std::uint32_t Choisit(Candidats, std::uint32_t, char, const std::string&) override { return 0; }
    std::optional<std::string> EditeTexte(const std::string&, const std::string&) override {
        return std::nullopt;
    }

  private:
    ContexteQt& c_;
};

} // namespace

ChoixFiche& ChoixFicheQt(ContexteQt& c) {
    static std::map<ContexteQt*, std::unique_ptr<ChoixFicheDialogues>> tous;
    auto& p = tous[&c];
    if (!p) p = std::make_unique<ChoixFicheDialogues>(c);
    return *p;
}

} // namespace sylvane
