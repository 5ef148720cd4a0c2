// The document store: heads of note position, title, file name and type,
// reached through a table of positions in blocks of 1000.
#include "store/base.h"

#include "store/pack.h"

#include <algorithm>

namespace sylvane {
namespace {

constexpr std::uint32_t kParBloc = 1000;
constexpr std::size_t kMorceau = 104;
constexpr std::size_t kLimite = 32000;

std::string Incident(std::uint32_t d) {
    return "Incident sur le document " + std::to_string(d) + " - R\xE9organisez votre base";
}

} // namespace

std::uint32_t Base::PosDoc(std::uint32_t d) {
    return LitPosPaire(paireDocs_, d, kParBloc);
}

void Base::EcritPosDoc(std::uint32_t d, std::uint32_t position) {
    EcritPosPaire(paireDocs_, d, kParBloc, Pack4(position));
    if (docNo_ == d) docNo_ = 0;
}

void Base::EcritDocs() {
    EcritPaire(paireDocs_);
}

void Base::RazDocs() {
    RazPaire(paireDocs_);
    docNo_ = 0;
    docNote_ = 0;
    docTitre_.clear();
    docFichier_.clear();
    docType_.clear();
}

void Base::LitDoc(std::uint32_t d) {
    if (d == docNo_ && d != 0) return;
    docNo_ = d;
    docNote_ = 0;
    docTitre_.clear();
    docFichier_.clear();
    docType_.clear();
    std::uint32_t pos = PosDoc(d);
    if (pos == 0) return;
    std::string c = Lire(pos, kMorceau);
    if (c.size() < 4) return;
    docNote_ = Unpack4(c, 0);
    // The note position may hold a "#": the text starts at the fifth byte.
    std::string t = c.substr(4);
    std::uint32_t p = pos + static_cast<std::uint32_t>(c.size());
    while (t.find('#') == std::string::npos) {
        if (t.size() > kLimite) {
            docNote_ = 0;
            Signale(Incident(d));
            return;
        }
        std::string suite = Lire(p, kMorceau);
        if (suite.empty()) break; // end of the file: a damaged head
        t += suite;
        p += static_cast<std::uint32_t>(suite.size());
    }
    t = TexteDuFichier(std::string_view(t).substr(0, t.find('#')));
    auto nul = t.find('\0');
    docTitre_ = t.substr(0, nul);
    if (nul == std::string::npos) return;
    docFichier_ = t.substr(nul + 1);
    auto ff = docFichier_.find('\xFF');
    if (ff != std::string::npos) {
        docType_ = docFichier_.substr(ff + 1);
        docFichier_.resize(ff);
    }
}

std::string Base::TitreDoc(std::uint32_t d) {
    return LitDoc(d), docTitre_;
}
std::string Base::FichierDoc(std::uint32_t d) {
    return LitDoc(d), docFichier_;
}
std::string Base::TypeDoc(std::uint32_t d) {
    return LitDoc(d), docType_;
}
std::uint32_t Base::NotePosDoc(std::uint32_t d) {
    return LitDoc(d), docNote_;
}

std::string Base::NoteDoc(std::uint32_t d) {
    std::uint32_t pos = NotePosDoc(d);
    if (pos == 0) return "";
    bool trop = false;
    std::string t = LireTexte(pos, 50, kLimite, &trop);
    if (trop) {
        Signale(Incident(d));
        return "";
    }
    while (t.size() >= 2 && t.compare(0, 2, "\r\n") == 0)
        t.erase(0, 2);
    while (t.size() >= 2 && t.compare(t.size() - 2, 2, "\r\n") == 0)
        t.resize(t.size() - 2);
    return t;
}

void Base::EcritDoc(std::uint32_t d, std::string_view tete) {
    if (d == 0) return;
    if (tete.empty()) {
        EcritPosDoc(d, 0);
        docNo_ = docNote_ = 0;
        docTitre_.clear();
        docFichier_.clear();
        docType_.clear();
        return;
    }
    // The note position stays as it is; what follows is a text.
    const std::size_t note = std::min<std::size_t>(tete.size(), 4);
    std::uint32_t pos =
        Ajouter(std::string(tete.substr(0, note)) + TexteDansFichier(tete.substr(note)));
    EcritPosDoc(d, pos);
    docNo_ = 0; // read back what was written, split as a reader splits it
    LitDoc(d);
    if (!docType_.empty() && std::find(typesDocuments_.begin(), typesDocuments_.end(), docType_) ==
                                 typesDocuments_.end())
        typesDocuments_.push_back(docType_);
    marqueModif_ = true;
}

namespace {
std::string TeteDoc(std::uint32_t note, std::string_view titre, std::string_view fichier,
                    std::string_view type) {
    std::string t = Pack4(note);
    t += titre;
    t += '\0';
    t += fichier;
    if (!type.empty()) {
        t += '\xFF';
        t += type;
    }
    return t;
}
} // namespace

void Base::EcritNoteDoc(std::uint32_t d, std::string_view note) {
    if (PosDoc(d) == 0) return;
    std::uint32_t pos = AjouteTexte(note);
    LitDoc(d);
    std::string titre = docTitre_, fichier = docFichier_, type = docType_;
    EcritDoc(d, TeteDoc(pos, titre, fichier, type));
}

std::uint32_t Base::CreeDoc(std::string_view titre, std::string_view fichier, std::string_view type,
                            std::string_view note) {
    const std::uint32_t d = entete_.maxDocument + 1;
    entete_.maxDocument = d;
    std::uint32_t pos = AjouteTexte(note);
    EcritDoc(d, TeteDoc(pos, titre, fichier, type));
    std::uint32_t place = PlaceDoc(d);
    triDocuments_.inserer(place, d);
    entete_.nbDocuments += 1;
    triDocumentsModifie = true;
    return d;
}

void Base::SupprimeDoc(std::uint32_t d) {
    if (d == 0 || PosDoc(d) == 0) return;
    std::uint32_t place = TrouvePlaceDoc(d);
    EcritDoc(d, "");
    if (place) {
        triDocuments_.retirer(place);
        entete_.nbDocuments -= 1;
    }
    triDocumentsModifie = true;
    if (entete_.documentTitre == d) entete_.documentTitre = 0;
}

void Base::DefinitDocumentTitre(std::uint32_t d) {
    entete_.documentTitre = d;
    marqueModif_ = true;
}

} // namespace sylvane
