#include "ui/frm_document.h"

#include "exchange/image_entete.h"
#include "store/evenement_edition.h"
#include "store/pack.h"
#include "text/messages.h"
#include "text/mots.h"
#include "text/utf8.h"

#include <algorithm>
#include <chrono>

namespace sylvane {
namespace {

Bureau* bureau = nullptr;
// Set by the window layer while statics are made: made on first use.
ChoixDocument& ChoixDoc() {
    static ChoixDocument c;
    return c;
}
std::uint64_t version = 0;

std::string Barres(std::string s) {
    std::replace(s.begin(), s.end(), '\\', '/');
    return s;
}

std::string Dossier(const std::string& chemin) {
    const std::string c = Barres(chemin);
    const auto p = c.rfind('/');
    return p == std::string::npos ? std::string("./") : c.substr(0, p + 1);
}

bool Absolu(const std::string& c) {
    return (!c.empty() && (c[0] == '/' || c[0] == '\\')) ||
           (c.size() >= 2 && c[1] == ':' && std::isalpha(static_cast<unsigned char>(c[0])));
}

bool CommencePar(const std::string& s, const std::string& debut) {
    return s.size() >= debut.size() && CleMot(s.substr(0, debut.size())) == CleMot(debut);
}

bool Existe(MDIForm1& f, const std::string& chemin) {
    try {
        return f.app().fs().existe(chemin);
    } catch (const ErreurES&) {
        return false;
    }
}

// A text file, cut at the viewer's bound, as the program keeps texts: a
// file in UTF-8 is converted, any other is taken as Windows-1252.
std::string LitTexte(SystemeFichiers& fs, const std::string& chemin, std::size_t borne) {
    auto fichier = fs.ouvrir(chemin, Mode::Lecture);
    std::string t = fichier->lire(0, borne);
    if (t.compare(0, 3, "\xEF\xBB\xBF") == 0) t.erase(0, 3);
    const std::string ansi = Utf8VersAnsi(t);
    return AnsiVersUtf8(ansi) == t ? ansi : t;
}

// Whether a list of documents read by place (0 past its end, 200 at most)
// holds d.
template <class F> bool Contient(F no, std::uint32_t d) {
    for (int i = 1; i <= 200; ++i) {
        const std::uint32_t x = no(i);
        if (x == 0) return false;
        if (x == d) return true;
    }
    return false;
}

} // namespace

void DefinitBureau(Bureau* b) { bureau = b; }
void DefinitChoixDocument(ChoixDocument choix) { ChoixDoc() = std::move(choix); }
std::uint64_t VersionDocuments() { return version; }
Bureau* BureauCourant() { return bureau; }

DemandeDocument& DocumentDemande() {
    static DemandeDocument d;
    return d;
}

std::string FormulaireDocument(const char* formulaire, std::uint32_t d) {
    return std::string(formulaire) + ":" + std::to_string(d);
}

std::uint32_t NumeroFormulaire(const std::string& nom) {
    const auto p = nom.find(':');
    if (p == std::string::npos) return 0;
    std::uint32_t n = 0;
    for (std::size_t i = p + 1; i < nom.size() && std::isdigit(static_cast<unsigned char>(nom[i]));
         ++i)
        n = n * 10 + static_cast<std::uint32_t>(nom[i] - '0');
    return n;
}

void OuvreDescription(MDIForm1& f, std::uint32_t d, OrigineDocument origine) {
    Base* b = f.base();
    if (b == nullptr) return;
    DemandeDocument& demande = DocumentDemande();
    demande.active = true;
    demande.document = d;
    demande.origine = std::move(origine);
    // New documents each get a window of their own.
    static std::uint32_t nouveaux = 0;
    const bool titre = d != 0 && d == b->Tete().documentTitre;
    f.services().fenetres.Ouvre(titre ? std::string("FrmDesImage")
                                : d == 0 ? "FrmDesImage:+" + std::to_string(++nouveaux)
                                         : FormulaireDocument("FrmDesImage", d));
    demande = {};
}

std::string DossierImages(MDIForm1& f) {
    const std::string& image = f.app().parametres().nomImage;
    if (!image.empty()) return Dossier(image);
    Base* b = f.base();
    return b ? Dossier(b->Chemins().base) : std::string("./");
}

std::string CheminDocument(MDIForm1& f, const std::string& fichier) {
    if (fichier.empty() || Absolu(fichier)) return Barres(fichier);
    return DossierImages(f) + Barres(fichier);
}

std::string NomDocument(MDIForm1& f, const std::string& chemin) {
    const std::string dossier = DossierImages(f), c = Barres(chemin);
    if (c.size() > dossier.size() && c.compare(0, dossier.size(), dossier) == 0)
        return c.substr(dossier.size());
    return chemin;
}

bool EstAdresse(const std::string& fichier) {
    return CommencePar(fichier, "http://") || CommencePar(fichier, "https://");
}

Visionneuse Visu_Document(MDIForm1& f, std::uint32_t d) {
    Base* b = f.base();
    if (b == nullptr || d == 0 || b->PosDoc(d) == 0) return Visionneuse::Aucune;
    Fenetres& fen = f.services().fenetres;
    const std::string fichier = b->FichierDoc(d);
    const bool titre = d == b->Tete().documentTitre;
    // The title document is an e-mail entry: its form is all there is.
    if (titre) {
        OuvreDescription(f, d);
        return Visionneuse::Description;
    }
    auto introuvable = [&] {
        f.services().boites.Information(700);
        OuvreDescription(f, d);
        return Visionneuse::Description;
    };
    if (Trim(fichier).empty()) return introuvable();
    const std::string image = FormulaireDocument("FrmImage", d);
    if (fen.EstOuverte(image)) {
        fen.Ouvre(image);
        return Visionneuse::Image;
    }
    if (EstAdresse(fichier))
        return bureau && bureau->OuvreAdresse(fichier) ? Visionneuse::Navigateur
                                                       : Visionneuse::Aucune;
    const std::string chemin = CheminDocument(f, fichier);
    if (!Existe(f, chemin)) return introuvable();
    const std::string ext = ExtensionFichier(chemin);
    if (ext == "htm" || ext == "html" || b->TypeDoc(d) == Message(725))
        return bureau && bureau->OuvreAdresse("file://" + chemin) ? Visionneuse::Navigateur
                                                                  : Visionneuse::Aucune;
    if (ExtensionImage(ext)) {
        DocumentDemande() = {true, d, {}};
        fen.Ouvre(image);
        DocumentDemande() = {};
        return Visionneuse::Image;
    }
    if (ext == "txt" || ext == "text" || ext == "log" || ext == "csv") {
        DocumentDemande() = {true, d, {}};
        fen.Ouvre(FormulaireDocument("FrmOLE", d));
        DocumentDemande() = {};
        return Visionneuse::Texte;
    }
    // ".svo" and every other file: the program the system associates.
    if (bureau && bureau->OuvreFichier(chemin)) return Visionneuse::Systeme;
    f.services().boites.Information(msg_documents::SansAssociation, fichier);
    return Visionneuse::Aucune;
}

// --- The documents of a person or an event ------------------------------------------------

DocumentsDe::DocumentsDe(MDIForm1& f, OrigineDocument::Genre genre,
                         std::function<std::uint32_t()> proprietaire)
    : f_(f), genre_(genre), proprietaire_(std::move(proprietaire)) {}

std::vector<std::uint32_t> DocumentsDe::Liste() {
    std::vector<std::uint32_t> v;
    Base* b = f_.base();
    const std::uint32_t n = proprietaire_();
    if (b == nullptr || n == 0) return v;
    const bool evt = genre_ == OrigineDocument::Genre::Evenement;
    for (int i = 1; i <= 200; ++i) {
        const std::uint32_t d = evt ? b->DocEvtNo(n, i) : b->DocNo(n, i);
        if (d == 0) break;
        v.push_back(d);
    }
    return v;
}

std::uint32_t DocumentsDe::Rang(int rang) {
    const std::vector<std::uint32_t> l = Liste();
    return rang >= 0 && rang < static_cast<int>(l.size()) ? l[static_cast<std::size_t>(rang)] : 0;
}

// Every window reads the base again: the sheet, the event forms and the
// lists of documents.
void DocumentsDe::Apres() {
    ++version;
    f_.Aller(f_.PersonneEnCours());
}

OrigineDocument DocumentsDe::Origine(std::uint32_t n) {
    MDIForm1* f = &f_;
    // The form that saves may outlive this list: it holds the main window only.
    return {genre_, n, [f](std::uint32_t) { f->Aller(f->PersonneEnCours()); }};
}

bool DocumentsDe::CmdCreImage() {
    const std::uint32_t n = proprietaire_();
    if (f_.base() == nullptr || n == 0 || f_.Occupe()) return false;
    OuvreDescription(f_, 0, Origine(n));
    return true;
}

bool DocumentsDe::CmdLstImage() {
    Base* b = f_.base();
    const std::uint32_t n = proprietaire_();
    if (b == nullptr || n == 0 || f_.Occupe() || !ChoixDoc()) return false;
    const std::uint32_t d = ChoixDoc()(f_);
    if (d == 0 || b->PosDoc(d) == 0) return false;
    const std::vector<std::uint32_t> l = Liste();
    if (std::find(l.begin(), l.end(), d) != l.end()) return false;
    if (genre_ == OrigineDocument::Genre::Evenement) b->MajDocsEvt(n, d, 'A');
    else b->MajDocs(n, d, 'A');
    Apres();
    return true;
}

bool DocumentsDe::CmdDesImage(int rang) {
    const std::uint32_t d = Rang(rang);
    if (d == 0 || f_.Occupe()) return false;
    OuvreDescription(f_, d, Origine(proprietaire_()));
    return true;
}

bool DocumentsDe::CmdSuppImage(int rang) {
    const std::uint32_t d = Rang(rang);
    if (d == 0 || f_.Occupe()) return false;
    if (f_.services().boites.Question(617) != Reponse::Oui) return false;
    Base& b = *f_.base();
    if (genre_ == OrigineDocument::Genre::Evenement) b.MajDocsEvt(proprietaire_(), d, 'S');
    else b.MajDocs(proprietaire_(), d, 'S');
    Apres();
    return true;
}

Visionneuse DocumentsDe::CmdVisuImage(int rang) {
    const std::uint32_t d = Rang(rang);
    if (d == 0 || f_.Occupe()) return Visionneuse::Aucune;
    return Visu_Document(f_, d);
}

bool DocumentsDe::CmdDocUp(int rang) {
    if (genre_ != OrigineDocument::Genre::Evenement || f_.base() == nullptr || rang < 1 ||
        f_.Occupe() || !EchangeDocuments(*f_.base(), proprietaire_(), rang))
        return false;
    Apres();
    return true;
}

bool DocumentsDe::CmdDocDown(int rang) {
    if (genre_ != OrigineDocument::Genre::Evenement || f_.base() == nullptr || rang < 0 ||
        f_.Occupe() || !EchangeDocuments(*f_.base(), proprietaire_(), rang + 1))
        return false;
    Apres();
    return true;
}

// --- FrmDesImage -----------------------------------------------------------------------

FrmDesImage::FrmDesImage(MDIForm1& f, std::uint32_t d, OrigineDocument origine, bool titre)
    : f_(f), document_(d), origine_(std::move(origine)), titre_(titre) {
    Base* b = f_.base();
    if (b != nullptr && titre_ && document_ == 0) document_ = b->Tete().documentTitre;
    if (b != nullptr && document_ != 0 && document_ == b->Tete().documentTitre) titre_ = true;
    if (titre_) origine_.genre = OrigineDocument::Genre::Titre;
    Charge();
}

void FrmDesImage::Charge() {
    Base* b = f_.base();
    if (b != nullptr && document_ != 0 && b->PosDoc(document_) != 0) {
        intitule = b->TitreDoc(document_);
        fichier = b->FichierDoc(document_);
        type = b->TypeDoc(document_);
        commentaire = b->NoteDoc(document_);
    } else {
        document_ = 0;
        intitule = fichier = type = commentaire = "";
    }
    if (titre_) type = Message(967);
    ole = ExtensionFichier(fichier) == "svo";
    intitule0_ = intitule;
    fichier0_ = fichier;
    type0_ = type;
    commentaire0_ = commentaire;
}

std::string FrmDesImage::Legende() const {
    using namespace msg_documents;
    if (titre_) return Message(DescriptionBase);
    if (document_ == 0) return Message(NouveauDocument);
    return MessageAvec(msg_documents::Document, intitule0_);
}

std::string FrmDesImage::LibelleFichier() const {
    return titre_ ? Message(967) : Message(msg_documents::NomFichier);
}

std::vector<std::string> FrmDesImage::Types() const {
    std::vector<std::string> t;
    auto ajoute = [&t](const std::string& s) {
        if (!Trim(s).empty() && std::find(t.begin(), t.end(), s) == t.end()) t.push_back(s);
    };
    for (const auto& s : f_.app().parametres().typesDocument) ajoute(s);
    if (Base* b = f_.base())
        for (const auto& s : b->TypesDocuments()) ajoute(s);
    ajoute(Message(725));
    ajoute(Message(967));
    return t;
}

bool FrmDesImage::Modifie() const {
    return intitule != intitule0_ || fichier != fichier0_ || type != type0_ ||
           commentaire != commentaire0_;
}

bool FrmDesImage::CmdFichier() {
    if (titre_) return false;
    DialoguesFichier& d = f_.services().fichiers;
    const auto chemin =
        ole ? d.Ouvrir(710, "Lien OLE |*.svo|", "*.svo")
            : d.Ouvrir(msg_documents::NomFichier,
                       "Fichiers Image |*.bmp;*.tif;*.gif;*.jpg;*.emf;*.wpg;*.pcx;*.pic;*.tga;"
                       "*.msp;*.iff;*.lbm;*.mac;*.gem;*.img;*.cut;*.dib;*.rle;*.wmf;*.png;*.jpeg;"
                       "*.tiff|Tous Fichiers |*.*|",
                       DossierImages(f_));
    if (!chemin) return false;
    fichier = NomDocument(f_, *chemin);
    return true;
}

// The document leaves its place in the table sorted by title and goes to
// that of its new title.
void FrmDesImage::RangeTitre(std::uint32_t d) {
    Base& b = *f_.base();
    TableTri& t = b.TableDocuments();
    std::size_t place = 0;
    for (std::size_t i = 1; i <= t.taille(); ++i)
        if (t.at(i) == d) {
            place = i;
            break;
        }
    if (place) t.retirer(place);
    const std::string cle = CleMot(b.TitreDoc(d));
    std::size_t bas = 1, haut = t.taille() + 1;
    while (bas < haut) {
        const std::size_t m = (bas + haut) / 2;
        if (CleMot(b.TitreDoc(t.at(m))) <= cle)
            bas = m + 1;
        else
            haut = m;
    }
    t.inserer(bas, d);
    b.triDocumentsModifie = true;
}

bool FrmDesImage::Enregistre() {
    Base* b = f_.base();
    if (b == nullptr || f_.Occupe()) return false;
    if (Trim(intitule).empty() && Trim(fichier).empty()) {
        f_.services().boites.Information(712);
        return false;
    }
    // A "#" ends a text in the base: the store escapes it.
    if (document_ != 0 && b->PosDoc(document_) != 0) {
        if (!Modifie()) return true;
        if (commentaire != commentaire0_) b->EcritNoteDoc(document_, commentaire);
        if (intitule != intitule0_ || fichier != fichier0_ || type != type0_) {
            std::string tete = Pack4(b->NotePosDoc(document_)) + intitule;
            tete += '\0';
            tete += fichier;
            if (!type.empty()) tete += '\xFF' + type;
            b->EcritDoc(document_, tete);
            if (CleMot(intitule) != CleMot(intitule0_)) RangeTitre(document_);
        }
    } else {
        document_ = b->CreeDoc(intitule, fichier, type, commentaire);
    }
    const std::uint32_t d = document_;
    switch (origine_.genre) {
    case OrigineDocument::Genre::Personne:
        if (!Contient([&](int i) { return b->DocNo(origine_.numero, i); }, d))
            b->MajDocs(origine_.numero, d, 'A');
        if (origine_.apres) origine_.apres(d);
        break;
    case OrigineDocument::Genre::Evenement:
        if (!Contient([&](int i) { return b->DocEvtNo(origine_.numero, i); }, d))
            b->MajDocsEvt(origine_.numero, d, 'A');
        if (origine_.apres) origine_.apres(d);
        break;
    case OrigineDocument::Genre::Titre: b->DefinitDocumentTitre(d); break;
    case OrigineDocument::Genre::Aucune: break;
    }
    ++version;
    Charge();
    return true;
}

bool FrmDesImage::Fermeture() {
    if (!Modifie() || f_.base() == nullptr) return true;
    if (f_.services().boites.Question(msg_documents::QuestionFermeture) != Reponse::Oui)
        return true;
    return Enregistre();
}

Visionneuse FrmDesImage::CmdVisu() {
    if (titre_) return Visionneuse::Aucune;
    if (Modifie() && !Enregistre()) return Visionneuse::Aucune;
    return Visu_Document(f_, document_);
}

// --- FrmLstImage ---------------------------------------------------------------------

std::size_t FrmLstImage::Nombre() {
    Base* b = f_.base();
    return b ? b->TableDocuments().taille() : 0;
}

std::uint32_t FrmLstImage::DocumentLigne(std::size_t i) {
    return i < Nombre() ? f_.base()->TriDoc(i + 1) : 0;
}

std::vector<std::string> FrmLstImage::Ligne(std::size_t i) {
    const std::uint32_t d = DocumentLigne(i);
    if (d == 0) return {"", "", "", ""};
    Base& b = *f_.base();
    return {std::to_string(d), b.TitreDoc(d), b.FichierDoc(d), b.TypeDoc(d)};
}

bool FrmLstImage::CmdMaj(std::size_t i) {
    const std::uint32_t d = DocumentLigne(i);
    if (d == 0 || f_.Occupe()) return false;
    OuvreDescription(f_, d);
    return true;
}

bool FrmLstImage::CmdAjout() {
    if (f_.base() == nullptr || f_.Occupe()) return false;
    OuvreDescription(f_, 0);
    return true;
}

bool FrmLstImage::CmdSupp(std::size_t i) {
    const std::uint32_t d = DocumentLigne(i);
    if (d == 0 || f_.Occupe()) return false;
    if (f_.services().boites.Question(617) != Reponse::Oui) return false;
    f_.base()->SupprimeDoc(d);
    ++version;
    return true;
}

Visionneuse FrmLstImage::CmdVisu(std::size_t i) {
    const std::uint32_t d = DocumentLigne(i);
    return d ? Visu_Document(f_, d) : Visionneuse::Aucune;
}

bool FrmLstImage::CmdUtilisation(std::size_t i) {
    const std::uint32_t d = DocumentLigne(i);
    if (d == 0) return false;
    DocumentDemande() = {true, d, {}};
    f_.services().fenetres.Ouvre(FormulaireDocument("FrmUtilImage", d));
    DocumentDemande() = {};
    return true;
}

// --- FrmUtilImage ------------------------------------------------------------------

FrmUtilImage::FrmUtilImage(MDIForm1& f, std::uint32_t d) : f_(f), document_(d) { Charge(); }

std::string FrmUtilImage::Legende() {
    Base* b = f_.base();
    return MessageAvec(msg_documents::Utilisation, b ? b->TitreDoc(document_) : "");
}

FrmUtilImage::Ligne FrmUtilImage::LignePersonne(Base& b, std::uint32_t n) {
    Ligne l;
    l.genre = 'I';
    l.numero = n;
    l.nom = b.NomDates(n);
    // The normalised year: "0000" unknown, "-850" before Christ.
    const std::string an = b.CleAnNaiss(n);
    if (std::all_of(an.begin() + (an[0] == '-' ? 1 : 0), an.end(),
                    [](char c) { return c >= '0' && c <= '9'; }))
        l.annee = std::stoi(an);
    return l;
}

FrmUtilImage::Ligne FrmUtilImage::LigneEvenement(Base& b, std::uint32_t e) {
    Ligne l;
    l.genre = 'E';
    l.numero = e;
    l.nom = b.LibelleEvt(e);
    const std::string lieu = b.LieuEvt(e);
    if (!lieu.empty()) l.nom += ", " + lieu;
    // Event dates are days from 30 December 1899.
    if (const long date = b.DateEvt(e); date != 0) {
        const std::chrono::sys_days jour{std::chrono::days{date - 25569}};
        l.annee = static_cast<int>(std::chrono::year_month_day{jour}.year());
    }
    return l;
}

void FrmUtilImage::Range() {
    std::stable_sort(lignes_.begin(), lignes_.end(), [](const Ligne& a, const Ligne& b) {
        // Rows without a year go last.
        if ((a.annee == 0) != (b.annee == 0)) return b.annee == 0;
        return a.annee < b.annee;
    });
}

void FrmUtilImage::Charge() {
    lignes_.clear();
    Base* b = f_.base();
    if (b == nullptr || document_ == 0) return;
    for (std::size_t i = 1; i <= b->TablePersonnes().taille(); ++i) {
        const std::uint32_t n = b->TriFiche(i);
        if (Contient([&](int k) { return b->DocNo(n, k); }, document_))
            lignes_.push_back(LignePersonne(*b, n));
    }
    for (std::size_t i = 1; i <= b->TableEvenements().taille(); ++i) {
        const std::uint32_t e = b->TriEvt(i);
        if (Contient([&](int k) { return b->DocEvtNo(e, k); }, document_))
            lignes_.push_back(LigneEvenement(*b, e));
    }
    Range();
}

bool FrmUtilImage::RecoitGlisser(char genre, std::uint32_t numero) {
    Base* b = f_.base();
    if (b == nullptr || numero == 0 || document_ == 0 || f_.Occupe()) return false;
    for (const Ligne& l : lignes_)
        if (l.genre == genre && l.numero == numero) return false;
    if (genre == 'I' && numero <= b->Tete().maxPersonne) {
        b->MajDocs(numero, document_, 'A');
        lignes_.push_back(LignePersonne(*b, numero));
    } else if (genre == 'E' && b->PosEvt(numero) != 0) {
        b->MajDocsEvt(numero, document_, 'A');
        lignes_.push_back(LigneEvenement(*b, numero));
    } else {
        return false;
    }
    ++version;
    Range();
    return true;
}

bool FrmUtilImage::CmdMaj(std::size_t i) {
    if (i >= lignes_.size() || f_.Occupe()) return false;
    const Ligne& l = lignes_[i];
    Fenetres& fen = f_.services().fenetres;
    if (l.genre == 'E') {
        fen.OuvreNumero("FrmDesEvt", l.numero);
        return true;
    }
    f_.Confirme_Fiche_En_Cours();
    f_.personneFiche = l.numero;
    fen.Ouvre("FrmMisajour");
    return true;
}

bool FrmUtilImage::CmdAffichage(std::size_t i) {
    if (i >= lignes_.size() || lignes_[i].genre != 'I') return false;
    f_.Aller(lignes_[i].numero);
    return true;
}

// --- FrmOLE -----------------------------------------------------------------------------

std::string FrmOle::Legende() const {
    return adresse_.empty() ? Message(msg_documents::Visionneuse) : adresse_;
}

bool FrmOle::Montre(const std::string& adresse) {
    std::string a = Trim(adresse);
    if (a.empty()) return false;
    if (EstAdresse(a)) {
        adresse_ = a;
        return bureau && bureau->OuvreAdresse(a);
    }
    if (CommencePar(a, "file:")) {
        a.erase(0, 5);
        while (a.size() >= 2 && (a[0] == '/' || a[0] == '\\') && (a[1] == '/' || a[1] == '\\'))
            a.erase(0, 1);
    }
    const std::string chemin = CheminDocument(f_, a);
    const std::string ext = ExtensionFichier(chemin);
    if (ext == "htm" || ext == "html") {
        adresse_ = chemin;
        return bureau && bureau->OuvreAdresse("file://" + chemin);
    }
    try {
        texte_ = LitTexte(f_.app().fs(), chemin, kTailleMax);
    } catch (const ErreurES&) {
        f_.services().boites.Information(700);
        return false;
    }
    adresse_ = chemin;
    return true;
}

bool FrmOle::Navigue(const std::string& adresse) {
    if (!Montre(adresse)) return false;
    if (historique_.empty() || historique_[position_] != adresse_) {
        if (!historique_.empty()) historique_.resize(position_ + 1);
        historique_.push_back(adresse_);
        position_ = historique_.size() - 1;
    }
    return true;
}

bool FrmOle::Precedent() {
    if (!PeutReculer()) return false;
    --position_;
    return Montre(historique_[position_]);
}

bool FrmOle::Suivant() {
    if (!PeutAvancer()) return false;
    ++position_;
    return Montre(historique_[position_]);
}

bool FrmOle::Accueil() {
    if (historique_.empty()) return false;
    position_ = 0;
    return Montre(historique_[0]);
}

bool FrmOle::Actualiser() { return !adresse_.empty() && Montre(adresse_); }

} // namespace sylvane
