// The documents of a base: the list by title (`FrmLstImage`), the form on
// one document (`FrmDesImage`), who uses it (`FrmUtilImage`), the choice of
// a viewer for it (`Visu_Document`) and the plain viewer of texts
// (`FrmOLE`). A document names a file (a path relative to the picture
// folder, or a whole one), a web address, or a ".svo" link; the base's
// title document is an e-mail entry.
#pragma once

#include "ui/mdiform1.h"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace sylvane {

namespace msg_documents {
inline constexpr int Document = 4200;       // caption "Document &1"
inline constexpr int NouveauDocument = 4201;
inline constexpr int Intitule = 4202;       // labels of FrmDesImage
inline constexpr int NomFichier = 4203;
inline constexpr int Type = 4204;
inline constexpr int Commentaire = 4205;
inline constexpr int ChkOle = 4206;
inline constexpr int CmdFichier = 4207;
inline constexpr int CmdVisu = 4208;
inline constexpr int CmdEnregistrer = 4209;
inline constexpr int QuestionFermeture = 4210;
inline constexpr int CmdMaj = 4211;         // FrmLstImage
inline constexpr int CmdAjout = 4212;
inline constexpr int CmdSupp = 4213;
inline constexpr int CmdUtilisation = 4214;
inline constexpr int Utilisation = 4215;    // caption of FrmUtilImage "&1"
inline constexpr int CmdFiche = 4216;
inline constexpr int CmdAffichage = 4217;
inline constexpr int ColTitre = 4218;
inline constexpr int ColFichier = 4219;
inline constexpr int ColType = 4220;
inline constexpr int ColNumero = 4221;
inline constexpr int ColNom = 4222;
inline constexpr int Precedent = 4223;      // FrmOLE's tool bar
inline constexpr int Suivant = 4224;
inline constexpr int Accueil = 4225;
inline constexpr int Arreter = 4226;
inline constexpr int Actualiser = 4227;
inline constexpr int Adresse = 4228;
inline constexpr int Ajuster = 4230;        // FrmImage's zoom
inline constexpr int TailleReelle = 4231;
inline constexpr int Agrandir = 4232;
inline constexpr int Reduire = 4233;
inline constexpr int PanneauEntete = 4234;       // the header panel
inline constexpr int SansAssociation = 4235;
inline constexpr int Nombre = 4236;         // "&1 documents"
inline constexpr int DescriptionBase = 4237; // caption of the title document's form
inline constexpr int Dossier = 4238;        // "Dossier des images : &1"
inline constexpr int Utilisations = 4239;   // "&1 personnes et événements"
inline constexpr int Visionneuse = 4240;    // caption of FrmOLE
} // namespace msg_documents

// What the desktop does for the program: a web address in the user's
// browser, a file in the program the system associates with it. The window
// layer sets the real one; tests set their own.
class Bureau {
  public:
    virtual ~Bureau() = default;
    virtual bool OuvreAdresse(const std::string& adresse) = 0;
    virtual bool OuvreFichier(const std::string& chemin) = 0;
};
void DefinitBureau(Bureau* b);
Bureau* BureauCourant();

// Where a document form was opened from, and what a save does there.
struct OrigineDocument {
    enum class Genre { Aucune, Personne, Evenement, Titre };
    Genre genre = Genre::Aucune;
    std::uint32_t numero = 0;
    // Called after the document was added to the person or event (the
    // sheet's or the event form's list is read again).
    std::function<void(std::uint32_t document)> apres;
};

// A document window asked for: the window that opens reads it, and it is
// emptied. Without one, a window reads the number after the ":" of its name.
struct DemandeDocument {
    bool active = false;
    std::uint32_t document = 0;
    OrigineDocument origine;
};
DemandeDocument& DocumentDemande();

// Goes up at each change of a document or of its uses: the open lists
// read theirs again when it moved.
std::uint64_t VersionDocuments();

// Window names: one window of each kind per document.
std::string FormulaireDocument(const char* formulaire, std::uint32_t d);
// The number after the ":" of a window name, 0 without.
std::uint32_t NumeroFormulaire(const std::string& nom);

// Opens the form on document d (0: a new one), or brings forward the one
// open on it. The title document's form is "FrmDesImage" alone, as
// `MnuDescription` opens it.
void OuvreDescription(MDIForm1& f, std::uint32_t d, OrigineDocument origine = {});

// The picture folder: that of the setting "Nom Image", else the base's.
// Ends with "/".
std::string DossierImages(MDIForm1& f);
// The whole path of a document's file name (its "\" read as "/").
std::string CheminDocument(MDIForm1& f, const std::string& fichier);
// The name a chosen file is kept under: relative when it lies in the
// picture folder or below it.
std::string NomDocument(MDIForm1& f, const std::string& chemin);
// Whether a file name is a web address ("http://", "https://", any case).
bool EstAdresse(const std::string& fichier);

// How `Visu_Document` showed a document.
enum class Visionneuse { Aucune, Description, Image, Texte, Navigateur, Systeme };
Visionneuse Visu_Document(MDIForm1& f, std::uint32_t d);

// The document picker of `CmdLstImage`: the base's documents by title,
// modal; the chosen one, 0 when cancelled. The window layer sets it.
using ChoixDocument = std::function<std::uint32_t(MDIForm1&)>;
void DefinitChoixDocument(ChoixDocument choix);

// The documents of a person (the sheet's `LstImage`) or of an event (the
// event form's `GrdDocument`), first 200, and the commands on them:
// `CmdCréImage`/`CmdCréationDoc`, `CmdLstImage`/`CmdNouveauDoc`,
// `CmdDesImage`, `CmdSuppImage`/`CmdSuppDoc`, `CmdVisuImage` and, for an
// event, `CmdDocUp`/`CmdDocDown`. After a change the windows are told
// through the main window, as for any change of the base.
class DocumentsDe {
  public:
    // `genre` is Personne or Evenement; the owner is read through
    // `proprietaire` at each command (a new event gets its number late).
    DocumentsDe(MDIForm1& f, OrigineDocument::Genre genre, std::function<std::uint32_t()> proprietaire);

    std::vector<std::uint32_t> Liste();
    // A new document in its form; its first save puts it in the list.
    bool CmdCreImage();
    // An existing document from the picker joins the list (once).
    bool CmdLstImage();
    // The form on the document of row `rang`.
    bool CmdDesImage(int rang);
    // Message 617, then the document leaves the list; its record stays.
    bool CmdSuppImage(int rang);
    Visionneuse CmdVisuImage(int rang);
    // An event's list only: swaps row `rang` with its neighbour.
    bool CmdDocUp(int rang);
    bool CmdDocDown(int rang);

  private:
    std::uint32_t Rang(int rang);
    OrigineDocument Origine(std::uint32_t n);
    void Apres();

    MDIForm1& f_;
    OrigineDocument::Genre genre_;
    std::function<std::uint32_t()> proprietaire_;
};

// --- FrmDesImage ---------------------------------------------------------------------

class FrmDesImage {
  public:
    // From the demand waiting, else on document d; `titre` opens the title
    // document (made when the base has none).
    FrmDesImage(MDIForm1& f, std::uint32_t d, OrigineDocument origine = {}, bool titre = false);

    std::uint32_t Document() const { return document_; }
    // The title document: an e-mail entry (no viewer, no file dialog).
    bool EstTitre() const { return titre_; }
    std::string Legende() const;
    // The label of the file field: "E-Mail" for the title document.
    std::string LibelleFichier() const;

    // The fields as the window shows them.
    std::string intitule, fichier, type, commentaire;
    bool ole = false;
    // The types offered: the setting's, then those of the base.
    std::vector<std::string> Types() const;

    bool Modifie() const;
    // `CmdFichier`: a ".svo" link with `ole`, else a picture; the file is
    // kept relative to the picture folder when it lies in it.
    bool CmdFichier();
    // Tool bar button 1. False when refused (712).
    bool Enregistre();
    // The window closes: with changes, a Yes/No question; Yes saves. False
    // when the close must not happen (a save refused).
    bool Fermeture();
    // `CmdVisu`: saves first when there are changes, then shows.
    Visionneuse CmdVisu();

  private:
    void Charge();
    void RangeTitre(std::uint32_t d);

    MDIForm1& f_;
    std::uint32_t document_ = 0;
    OrigineDocument origine_;
    bool titre_ = false;
    std::string intitule0_, fichier0_, type0_, commentaire0_;
};

// --- FrmLstImage -------------------------------------------------------------------

class FrmLstImage {
  public:
    explicit FrmLstImage(MDIForm1& f) : f_(f) {}
    // The documents in title order.
    std::size_t Nombre();
    std::uint32_t DocumentLigne(std::size_t i);
    // The cells of row i: number, title, file, type.
    std::vector<std::string> Ligne(std::size_t i);
    bool CmdMaj(std::size_t i);
    bool CmdAjout();
    // Messages 617 and 618; true when deleted.
    bool CmdSupp(std::size_t i);
    Visionneuse CmdVisu(std::size_t i);
    bool CmdUtilisation(std::size_t i);

  private:
    MDIForm1& f_;
};

// --- FrmUtilImage ------------------------------------------------------------------

class FrmUtilImage {
  public:
    FrmUtilImage(MDIForm1& f, std::uint32_t d);
    std::uint32_t Document() const { return document_; }
    std::string Legende();

    struct Ligne {
        char genre = 'I';          // 'I' a person, 'E' an event
        std::uint32_t numero = 0;
        std::string nom;           // name with dates, or the event's label
        int annee = 0;             // the birth (event) year, the sort key; 0 unknown
    };
    // Walks the persons and events of the base for those that use it.
    void Charge();
    const std::vector<Ligne>& Lignes() const { return lignes_; }
    // A person or event dropped on the grid takes the document.
    bool RecoitGlisser(char genre, std::uint32_t numero);
    // `CmdMaj`: the sheet of the person (pending edits settled first) or
    // the event's form.
    bool CmdMaj(std::size_t i);
    // `CmdAffichage`: the person becomes the person in course.
    bool CmdAffichage(std::size_t i);

  private:
    Ligne LignePersonne(Base& b, std::uint32_t n);
    Ligne LigneEvenement(Base& b, std::uint32_t e);
    void Range();

    MDIForm1& f_;
    std::uint32_t document_;
    std::vector<Ligne> lignes_;
};

// --- FrmOLE: the plain viewer ------------------------------------------------------

class FrmOle {
  public:
    explicit FrmOle(MDIForm1& f) : f_(f) {}
    // Enter in `TxtUrl`: a web address or an HTML page goes to the browser
    // (the viewer keeps its page), any other file is read as text. False
    // when nothing could be shown.
    bool Navigue(const std::string& adresse);
    const std::string& Adresse() const { return adresse_; }
    // The text shown (Windows-1252), and its caption.
    const std::string& Texte() const { return texte_; }
    std::string Legende() const;
    bool PeutReculer() const { return position_ > 0; }
    bool PeutAvancer() const { return position_ + 1 < historique_.size(); }
    bool Precedent();
    bool Suivant();
    bool Accueil();
    bool Actualiser();
    // Texts longer than this are cut: the viewer is for notes and letters.
    static constexpr std::size_t kTailleMax = 8u << 20;

  private:
    bool Montre(const std::string& adresse);

    MDIForm1& f_;
    std::string adresse_, texte_;
    std::vector<std::string> historique_;
    std::size_t position_ = 0;
};

} // namespace sylvane
