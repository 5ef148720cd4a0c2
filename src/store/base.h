// The open base: one binary file, its header, its block caches and its sort
// tables. Every other part of the program reads and writes a base through
// the accessors of this class, never through the file.
//
// Commit invariants (see also ValideBase):
//  1. Everything written behind the committed file end (`ZoneFin` of the
//     header on disk) is invisible until a header naming it is written.
//  2. No byte at or before the committed file end is overwritten before a
//     copy of the bytes it held at the last commit stands in the journal,
//     and that journal has been synced.
//  3. The header is written last, after a sync of everything it names, and
//     the journal is deleted only after a sync of the header.
// So a crash at any moment leaves, after the journal is replayed, exactly
// the last committed base or the new one.
#pragma once

#include "store/fichier.h"
#include "store/table_tri.h"
#include "store/temoins.h"
#include "text/parametres.h"

#include <array>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

namespace sylvane {

// The paths derived from the one the user chose.
struct CheminsBase {
    std::string base;    // extension "sv2"
    std::string svr;     // exchange file
    std::string journal; // extension "log"
    std::string gedcom;  // extension "ged"
    std::string titre;   // file name without folder and extension
};

// The folders are kept as given; of the file name, what stands before its
// first "." (so "famille.old.sv2" is the base "famille.sv2").
CheminsBase DeriveChemins(const std::string& chemin);

// A base that another process holds open for writing.
class ErreurBaseOccupee : public ErreurES {
  public:
    explicit ErreurBaseOccupee(const std::string& chemin)
        : ErreurES(chemin, "la base est ouverte en \xC3\xA9" "criture par un autre programme ; "
                           "fermez-la d'abord") {}
};

// Replays the journal left beside a base file by a crash (the copies of
// the last commit's bytes go back in place), syncs the file, and deletes
// the journal durably. The caller holds the base's lock.
void RejoueJournal(SystemeFichiers& fs, Fichier& base, const std::string& journal);

// Puts the committed, closed base file `nouvelle` in place of the base
// `cible` in one rename, then syncs the folder. The old base, when there
// is one, is locked first (ErreurBaseOccupee when another process has it
// open) and brought back to its last commit, so that its journal never
// falls on the new file. Before the rename the old base is whole.
void RemplaceBase(SystemeFichiers& fs, const std::string& nouvelle, const CheminsBase& cible);

class Base;
// The writing of an export over `chemin`, whole or not at all (see
// EcritureAtomique). An output that is the open base itself or its journal
// is refused (ErreurES) before anything is written.
std::unique_ptr<EcritureAtomique> SortieExport(Base& b, const std::string& chemin);

// A new base built whole before it takes the place of the base of a path:
// the base is made under the temporary name beside it, and `Valide`
// commits, closes and renames it over the target. Destroyed before that
// (an error, a stop, a missing source), the temporary base and its
// journal go and the target is as it was.
class RemplacementBase {
  public:
    RemplacementBase(Base& b, const std::string& chemin);
    ~RemplacementBase();
    RemplacementBase(const RemplacementBase&) = delete;
    RemplacementBase& operator=(const RemplacementBase&) = delete;
    const CheminsBase& Cible() const { return cible_; }
    // Commits and closes the base, then puts it in place.
    void Valide();

  private:
    Base& b_;
    CheminsBase cible_, temporaire_;
    bool fini_ = false;
};

// A text as the file holds it: its "#" escaped, then the "#" that ends it.
// Every text of the base is written through this, and read back through
// TexteDuFichier, so that a text may hold "#" (and so a character
// reference "&#1047;").
std::string TexteDansFichier(std::string_view texte);
// The text of the bytes the file holds before the ending "#".
std::string TexteDuFichier(std::string_view stocke);

// The comparable form of a year: each blank "0", a "-" moved to the front.
std::string CleAnnee(const std::string& an);

// One rubric slot of the person sheet or of the marriage sheet.
struct SlotRubrique {
    char symbole = ' ';
    char drapeau = ' '; // '1' for a rubric with a date
    std::string tag;    // found in the rubric table at open
};

// The 500-byte header, field by field.
struct Entete {
    std::string banniere;
    std::uint32_t zoneFin = 0;
    std::uint32_t nbPersonnes = 0;  // live persons
    std::uint32_t maxPersonne = 0;  // highest person number given
    std::uint32_t maxMariage = 0;
    char modeTri = '1';
    std::uint32_t nbRubriques = 0;
    std::uint32_t nbMots = 0;       // keyword entries
    std::uint32_t maxDocument = 0;
    std::uint32_t nbDocuments = 0;
    std::uint32_t maxEvenement = 0;
    std::uint32_t nbEvenements = 0;
    char premierPrenom = '0';       // field 102
    char particules = '0';          // field 103
    std::uint32_t posRubriques = 0;
    std::array<SlotRubrique, 10> rubriquesPersonne{};
    std::array<SlotRubrique, 10> rubriquesMariage{};
    std::uint32_t documentTitre = 0;
};

// The 500 header bytes of these fields, with the places of the eight tables
// in the order of `Table`.
std::string OctetsEntete(const Entete& e, const std::array<std::uint32_t, 8>& places);

// A table of block positions and where it stands in the file.
struct TableBlocs {
    std::vector<std::uint32_t> positions;
    std::uint32_t place = 0;  // 1-based position of the table in the file
    bool deplacee = false;    // has outgrown its place
};

// Kinds of tables, in the order the header names them.
enum class Table { Personnes, Mariages, Mots, Documents, Evenements, TriPersonnes, TriDocuments,
                   TriEvenements };

// The head of an event: five packed numbers, as stored.
struct TeteEvt {
    std::uint32_t date = 0;      // date value + 1000000
    std::uint32_t note = 0;      // position of the note text
    std::uint32_t personnes = 0; // position of the list of persons
    std::uint32_t documents = 0; // position of the list of documents
    std::uint32_t texte = 0;     // position of place, title and tag
    bool operator==(const TeteEvt&) const = default;
};

// The rubric value table of a note: for each sheet slot, the day and month
// of the date, the year and the value.
struct ValeurRubrique {
    std::string jourMois;
    std::string annee;
    std::string valeur;
};
using TableValeursRubriques = std::vector<ValeurRubrique>;

// Reports of the store: a damaged record, an inconsistent sort table. The
// user interface shows them in a box; the command line prints them.
using Signaleur = std::function<void(const std::string& texte)>;

class Base {
  public:
    Base(SystemeFichiers& fs, const Parametres& parametres);
    ~Base();
    Base(const Base&) = delete;
    Base& operator=(const Base&) = delete;

    // --- Lifecycle --------------------------------------------------------
    // A new base at this path (the file is written over). Throws ErreurES.
    void Nouvelle(const std::string& chemin);
    // Opens an existing base: replays a journal left by a crash, reads the
    // header, the tables and the sort tables. Throws ErreurES.
    // A base open for writing is locked against other writers
    // (ErreurBaseOccupee). `lectureSeule`: no lock is held and nothing can
    // be committed; a crash's journal is replayed only when no writer has
    // the base, and a writer's is left alone.
    void Ouvre(const std::string& chemin, bool lectureSeule = false);
    bool LectureSeule() const { return lectureSeule_; }
    // Commit: runs only when something was modified.
    void ValideBase();
    // Commit and close.
    void FermeBase();
    // Save: commit, then go on with the base open.
    void MnuEnregistrer();
    // The minute tick of the automatic save. Returns true when it saved.
    bool TicMinuterie();
    // Closes without commit: what was not committed is dropped; the journal
    // brings the file back to the last commit at the next open.
    void Abandonne();
    bool EstOuverte() const { return fichier_ != nullptr; }
    const CheminsBase& Chemins() const { return chemins_; }
    bool Modifiee() const;

    void SetSignaleur(Signaleur s) { signaleur_ = std::move(s); }
    void Signale(const std::string& texte) const;

    // --- Header -----------------------------------------------------------
    const Entete& Tete() const { return entete_; }
    Entete& TeteModifiable() { marqueModif_ = true; return entete_; }
    void InitBase();
    void LitEntete();
    void EcritEntete();
    void RazJournal();
    void RejoueJournal();
    void SauveAvant(std::uint32_t position, std::uint32_t taille);

    // --- Raw file access for the stores (1-based positions) ---------------
    std::string Lire(std::uint32_t position, std::size_t n);
    // Reads a text ended by "#", in chunks of `morceau` bytes, at most
    // `limite` bytes (0: up to the end of the file). `trop` tells whether the
    // limit was reached without "#".
    std::string LireTexte(std::uint32_t position, std::size_t morceau, std::size_t limite,
                          bool* trop = nullptr);
    // Appends at ZoneFin + 1 and returns the position written.
    std::uint32_t Ajouter(std::string_view donnees);
    // Appends a text and its "#"; an empty text is position 0 and no write
    // unless `vide` asks for its lone "#".
    std::uint32_t AjouteTexte(std::string_view texte, bool vide = false);
    // Writes in place, under the journal.
    void EcrireEnPlace(std::uint32_t position, std::string_view donnees);
    std::uint32_t ZoneFin() const { return entete_.zoneFin; }

    // Block tables, shared by the five block stores.
    TableBlocs& TableDe(Table t) { return tables_[static_cast<int>(t)]; }
    std::uint32_t PositionBloc(Table t, std::uint32_t bloc);
    // The block write: allocates the block at the file end when it has no
    // position yet, otherwise writes it in place.
    void EcritBlocTable(Table t, std::uint32_t bloc, std::string_view donnees);
    void MarqueModif() { marqueModif_ = true; }

    // --- Person store -----------------------------------------------------
    std::string LitSexe(std::uint32_t n);
    std::uint32_t LitPere(std::uint32_t n);
    std::uint32_t LitMere(std::uint32_t n);
    std::string LitAnNaiss(std::uint32_t n);
    std::string LitAnDeces(std::uint32_t n);
    std::string CleAnNaiss(std::uint32_t n);
    std::string CleAnDeces(std::uint32_t n);
    std::string LitIdentite(std::uint32_t n);
    std::string LitNom(std::uint32_t n);
    std::string LitPrenom(std::uint32_t n);
    std::string LitAutrePrenom(std::uint32_t n);
    std::string LitDateNaiss(std::uint32_t n);
    std::string LitDateDeces(std::uint32_t n);
    std::string LitNote(std::uint32_t n);
    std::uint32_t MariageNo(std::uint32_t n, int i);
    std::uint32_t EnfantNo(std::uint32_t n, int i);
    std::uint32_t LienNo(std::uint32_t n, int i);
    std::string TexteLienBrutNo(std::uint32_t n, int i); // the stored tag
    std::uint32_t EvtNo(std::uint32_t n, int i);
    std::string RoleEvtNo(std::uint32_t n, int i);       // the stored role tag
    std::uint32_t DocNo(std::uint32_t n, int i);
    // Whole lists as packed bytes (pairs for links and events).
    std::string ListeMariages(std::uint32_t n);
    std::string ListeEnfants(std::uint32_t n);
    std::string ListeLiens(std::uint32_t n);
    std::string ListeEvts(std::uint32_t n);
    std::string ListeDocs(std::uint32_t n);
    // Raw fields of the record, for the consistency control and the copy.
    std::uint32_t PositionChamp(std::uint32_t n, int offset);

    void EcritSexe(std::uint32_t n, std::string_view s);
    void EcritPere(std::uint32_t n, std::uint32_t p);
    void EcritMere(std::uint32_t n, std::uint32_t m);
    void EcritAnNaiss(std::uint32_t n, std::string_view s);
    void EcritAnDeces(std::uint32_t n, std::string_view s);
    void EcritIdentite(std::uint32_t n, std::string_view s);
    void EcritNote(std::uint32_t n, std::string_view s);
    void MajMariages(std::uint32_t n, std::uint32_t m, char op);
    void MajEnfants(std::uint32_t n, std::uint32_t c, char op);
    void MajLiens(std::uint32_t n, std::uint32_t p, std::string_view texte, char op);
    void MajEvts(std::uint32_t n, std::uint32_t e, std::string_view role, char op);
    void MajDocs(std::uint32_t n, std::uint32_t d, char op);
    void TriEvts(std::uint32_t n);
    // Writes of a whole list (packed bytes; pairs for links and events,
    // given as number + text). An empty value clears the field.
    void EcritListeMariages(std::uint32_t n, std::string_view liste);
    void EcritListeEnfants(std::uint32_t n, std::string_view liste);
    void EcritListeDocs(std::uint32_t n, std::string_view liste);
    void EcritListeLiens(std::uint32_t n, const std::vector<std::pair<std::uint32_t, std::string>>& l);
    void EcritListeEvts(std::uint32_t n, const std::vector<std::pair<std::uint32_t, std::string>>& l);

    std::string NomComplet(std::uint32_t n);
    std::string NomDates(std::uint32_t n);

    // Creation and deletion by the rules of the forms.
    std::uint32_t CreePersonne(std::string_view nom, std::string_view prenom,
                               std::string_view autresPrenoms, char sexe,
                               std::string_view anNaiss, std::string_view dateNaiss = {},
                               std::string_view anDeces = {}, std::string_view dateDeces = {});
    // Returns 0 when deleted, else the message number of the refusal.
    int RefusSuppressionPersonne(std::uint32_t n);
    int SupprimePersonne(std::uint32_t n);
    // Builds the first line of a person's note (the keyword line).
    std::string LigneMotsCles(std::uint32_t n, std::string_view lieuNaiss = {},
                              std::string_view lieuDeces = {});
    // The same for a name and first names not (or not so) stored: an
    // imported person's first names are split over two fields.
    std::string LigneMotsCles(std::string_view nom, std::string_view prenoms,
                              std::string_view lieuNaiss, std::string_view lieuDeces) const;

    // Whether the person sheet must be redrawn (set by the list writers).
    bool redessiner = false;

    // --- Marriage store ---------------------------------------------------
    std::uint32_t LitMari(std::uint32_t m);
    std::uint32_t LitFemme(std::uint32_t m);
    std::string LitAnMariage(std::uint32_t m);
    std::string LitAnFin(std::uint32_t m);
    std::string CleAnMariage(std::uint32_t m);
    std::string CleAnFin(std::uint32_t m);
    std::string LitNoteMariage(std::uint32_t m);
    void EcritMari(std::uint32_t m, std::uint32_t p);
    void EcritFemme(std::uint32_t m, std::uint32_t p);
    void EcritAnMariage(std::uint32_t m, std::string_view s);
    void EcritAnFin(std::uint32_t m, std::string_view s);
    void EcritNoteMariage(std::uint32_t m, std::string_view s);
    std::uint32_t CreeMariage(std::uint32_t mari, std::uint32_t femme, std::string_view an = {},
                              std::string_view anFin = {});

    // --- Sort tables ------------------------------------------------------
    std::uint32_t TriFiche(std::size_t i) const { return triPersonnes_.at(i); }
    std::uint32_t TriDoc(std::size_t i) const { return triDocuments_.at(i); }
    std::uint32_t TriEvt(std::size_t i) const { return triEvenements_.at(i); }
    TableTri& TablePersonnes() { return triPersonnes_; }
    TableTri& TableDocuments() { return triDocuments_; }
    TableTri& TableEvenements() { return triEvenements_; }
    std::uint32_t PlaceFiche(std::uint32_t n);
    // Place of an existing person in the table, 0 if absent.
    std::uint32_t TrouvePlaceFiche(std::uint32_t n);
    void MajTriFiche(std::size_t i, std::uint32_t n, char op);
    // The comparison string of a person under the current sort mode.
    std::string CleTriFiche(std::uint32_t n) { return std::string(CleVue(n)); }
    // The same, without a copy; valid until the next call.
    std::string_view CleVue(std::uint32_t n);
    // Sorts the whole person table under the current mode (modes "1" and "2").
    void TriTable(const std::function<bool(std::size_t, std::size_t)>& progres = {});
    // Replaces the number at place i; a table too short gets it in front.
    void PlaceTriFiche(std::size_t i, std::uint32_t n);
    // An import that sorts the whole table at its end: until RangeDifferes,
    // new persons go to the end of the table instead of to their place.
    void DiffereRangement() { differeDepuis_ = entete_.nbPersonnes + 1; }
    // Ends that: with `ranger`, each person made since goes where its
    // creation would have put it, in the order they were made.
    void RangeDifferes(bool ranger);
    bool triPersonnesModifie = false;
    bool triDocumentsModifie = false;
    bool triEvenementsModifie = false;
    std::string SansParticule(std::string_view nom) const;
    // Forgets the comparison strings (after a change of sort mode or of
    // the particle option).
    void OublieCles();

    // --- Rubrics ----------------------------------------------------------
    std::string LitRubrique(std::uint32_t k);
    std::uint32_t PosListeRubrique(std::uint32_t k);
    void EcritRubrique(std::uint32_t k, char symbole, std::string_view tag,
                       std::uint32_t position);
    std::array<std::uint32_t, 50>& TableRubriques() { return rubriques_; }

    // --- Rubrics and note forms (rubrique.cpp, notes.cpp) ------------------
    std::string LibelleRubrique(std::uint32_t k);
    // The rubric's keyword list as packed entry numbers; "" when none.
    std::string ListeRubrique(std::uint32_t k);
    // Number of the rubric of this symbol, 0 when none.
    std::uint32_t RubriqueDeSymbole(char symbole);
    TableValeursRubriques RubriquesNote(std::uint32_t n);
    TableValeursRubriques RubriquesMariage(std::uint32_t m);
    std::string CorpsNote(std::uint32_t n);
    std::string CorpsNoteMariage(std::uint32_t m);
    std::string LieuNaiss(std::uint32_t n);
    std::string LieuDeces(std::uint32_t n);
    std::string DateMariage(std::uint32_t m);
    std::string LieuMariage(std::uint32_t m);
    std::string LigneMariage(std::uint32_t m);
    std::string TexteDateMariage(std::uint32_t m);
    // Birth and death dates in words of the user's language.
    std::string TexteDateNaiss(std::uint32_t n);
    std::string TexteDateDeces(std::uint32_t n);
    // The name, then " °" with birth date, year and place, then " †" with
    // death date, year and place, each part only when known.
    std::string NomLong(std::uint32_t n);
    std::string NotesMariages(std::uint32_t n);
    // A person's note followed by the notes of its marriages: the text the
    // keyword index holds for the person.
    std::string NoteAvecMariages(std::uint32_t n);
    // The marriages of a person, up to the first 0 (at most 200).
    std::vector<std::uint32_t> Mariages(std::uint32_t n);
    // Value of the person rubric of this tag ("" when no slot has it).
    std::string ValeurRubriquePersonne(std::uint32_t n, const std::string& tag);
    // Whether a person slot of the sheet has this tag.
    bool EstTagRubrique(const std::string& tag) const;

    // --- Keyword index (index_mots.cpp) ------------------------------------
    std::string EntreeMot(std::uint32_t k);
    void EcritEntreeMot(std::uint32_t k, std::string_view entree);
    std::string LitMot(std::uint32_t k);
    std::string PersonnesMot(std::uint32_t k);
    // Person n's birth key changed: its place in its keyword lists follows.
    void RangeMots(std::uint32_t n, std::string_view ancienne);
    void RefaitRubrique(char symbole);
    void DebutLot();
    void AjoutLot(std::uint32_t n, std::string_view note);
    // Takes back what AjoutLot(n, note) put in, when the note is replaced.
    void RetireLot(std::uint32_t n, std::string_view note);
    void FinLot();
    // Drops an open batch: its words go to no list.
    void AbandonneLot() { lot_.reset(); }
    bool LotOuvert() const { return lot_ != nullptr; }
    // The words of a note behind a symbol, in order, with repetitions.
    static std::vector<std::string> MotsNote(std::string_view note, char symbole);
    // Progress of the long operations: a title and a text (a word, a count).
    std::function<void(const std::string& titre, const std::string& texte)> progres_;

    // --- Event store (evenement.cpp) ----------------------------------------
    std::uint32_t PosEvt(std::uint32_t e);
    TeteEvt LitTeteEvt(std::uint32_t e);
    void LitEvt(std::uint32_t e);
    long DateEvt(std::uint32_t e);
    std::string LieuEvt(std::uint32_t e);
    std::string TitreEvt(std::uint32_t e);
    std::string TagEvt(std::uint32_t e);
    std::string LibelleEvt(std::uint32_t e);
    std::string NoteEvt(std::uint32_t e);
    void EcritNoteEvt(std::uint32_t e, std::string_view s);
    std::uint32_t PersonneEvtNo(std::uint32_t e, int i);
    std::uint32_t DocEvtNo(std::uint32_t e, int i);
    std::string ListePersonnesEvt(std::uint32_t e);
    std::string ListeDocsEvt(std::uint32_t e);
    void MajPersonnesEvt(std::uint32_t e, std::uint32_t p, char op);
    void MajDocsEvt(std::uint32_t e, std::uint32_t d, char op);
    // Place, title and tag joined by NUL bytes.
    void EcritEvt(std::uint32_t e, std::string_view texte);
    // A new head; nullptr deletes the event.
    void EcritTeteEvt(std::uint32_t e, const TeteEvt* tete);
    void EcritDateEvt(std::uint32_t e, long date);
    void EcritPosEvt(std::uint32_t e, std::uint32_t position);
    std::uint32_t CreeEvtPersonne(std::uint32_t n, long date, std::string_view tag,
                                  std::string_view lieu);
    std::uint32_t CreeEvtMariage(std::uint32_t m, long date, std::string_view tag,
                                 std::string_view lieu);
    // Removes the event from its persons, the sort table and the base.
    void SupprimeEvt(std::uint32_t e);
    void EcritEvts();
    void RazEvts();
    // The table of event kinds and their roles.
    TableTemoins& Temoins() { return temoins_; }

    // --- Document store (document.cpp) ---------------------------------------
    std::uint32_t PosDoc(std::uint32_t d);
    void LitDoc(std::uint32_t d);
    std::string TitreDoc(std::uint32_t d);
    std::string FichierDoc(std::uint32_t d);
    std::string TypeDoc(std::uint32_t d);
    std::string NoteDoc(std::uint32_t d);
    std::uint32_t NotePosDoc(std::uint32_t d);
    // tete: packed note position, title, NUL, file, optionally 0xFF and type.
    // An empty head deletes the document.
    void EcritDoc(std::uint32_t d, std::string_view tete);
    void EcritPosDoc(std::uint32_t d, std::uint32_t position);
    std::uint32_t CreeDoc(std::string_view titre, std::string_view fichier,
                          std::string_view type = {}, std::string_view note = {});
    void EcritNoteDoc(std::uint32_t d, std::string_view note);
    void SupprimeDoc(std::uint32_t d);
    void DefinitDocumentTitre(std::uint32_t d);
    void EcritDocs();
    void RazDocs();
    const std::vector<std::string>& TypesDocuments() const { return typesDocuments_; }

    // --- Document and event sort tables (tri_stores.cpp) ----------------------
    std::uint32_t PlaceDoc(std::uint32_t d);
    std::uint32_t PlaceEvt(std::uint32_t e);
    // Place of an existing record, 0 if absent.
    std::uint32_t TrouvePlaceDoc(std::uint32_t d);
    std::uint32_t TrouvePlaceEvt(std::uint32_t e);
    void BulleDoc(std::size_t ancienne, std::size_t nouvelle);
    void BulleEvt(std::size_t ancienne, std::size_t nouvelle);
    void PlaceTriDoc(std::size_t i, std::uint32_t d);
    void PlaceTriEvt(std::size_t i, std::uint32_t e);
    // Change of ModeTri: asks (716, 717, title 629) through `confirme`, then
    // "0" keeps the table, "1" and "2" sort it. False when refused.
    bool ChangeModeTri(char mode,
                       const std::function<bool(const std::string& titre,
                                                const std::string& question)>& confirme);

    // --- Links to the stores and numberings of other units ----------------
    // Keyword index update for a changed note (empty until the index exists).
    void MajMots(std::uint32_t n, std::string_view ancienne, std::string_view nouvelle);
    // Date value of an event, by which a person's events are ordered.
    long ValeurDateEvt(std::uint32_t e);
    // Called when a parent of a person changes (the numberings go stale).
    std::function<void(std::uint32_t personne, std::uint32_t parent)> parentChange_;
    // Called when a person number is given (the numberings grow).
    std::function<void(std::uint32_t personne)> personneCreee_;
    // Value of a display-name tag that is no identity field (NUMB, rubrics).
    std::function<std::string(std::uint32_t personne, const std::string& tag)> valeurNom_;

    // --- Settings of the process -----------------------------------------
    const Parametres& Params() const { return parametres_; }
    // The file layer the base lives on (for the files beside it).
    SystemeFichiers& Systeme() { return fs_; }

    // Statistics for tests and benchmarks.
    struct Compteurs {
        long lecturesBlocPersonne = 0;
        long ecrituresBlocPersonne = 0;
        long lecturesBlocMariage = 0;
        long ecrituresBlocMariage = 0;
    };
    const Compteurs& Stats() const { return stats_; }
    // Block numbers held by the person and marriage caches, in cache order
    // (least recently used or first loaded first).
    std::vector<std::uint32_t> BlocsCachePersonnes() const;
    std::vector<std::uint32_t> BlocsCacheMariages() const;

  private:
    // --- Base file
    void Ferme();
    void LitTables();
    void LitTablesTri();
    // Counts of the header checked against the sort tables; true when one
    // was impossible (and has been set from the tables).
    bool VerifieComptes();
    void EcritTriFiche();
    void EcritTriDoc();
    void EcritTriEvt();
    // Flush of the keyword, document and event caches at the commit.
    void EcritPaireMots();
    void EcritPaireDocuments();
    void EcritPaireEvenements();
    // Drops the keyword, document, event and rubric caches, in this order.
    void RazStores();
    void EcritUneTableTri(Table t, TableTri& table, std::uint32_t nombre);
    void ViderTampon();
    void SynchroniserJournal();
    void Journaliser(std::uint64_t debut, std::uint64_t fin);
    bool Couvert(std::uint64_t debut, std::uint64_t fin) const;
    bool ConditionTable(Table t) const;
    std::uint32_t EntreesTable(Table t) const;

    // --- Person cache
    struct Slot {
        std::string donnees;
        std::uint32_t bloc = 0;
        bool sale = false;
    };
    void LitFiche(std::uint32_t n);
    char* Enreg();
    void EcritBloc(int slot);
    void EcritFiches();
    void RazFiches();
    void Salir();
    std::string LitListe(std::uint32_t n, int offset, int taille, int pas,
                         std::pair<std::uint32_t, std::string>& cache);
    void EcritListe(std::uint32_t n, int offset, std::string_view liste,
                    std::pair<std::uint32_t, std::string>& cache);
    void LitIdentiteCache(std::uint32_t n);
    void GardeIdentite(std::uint32_t n, std::string brute);
    void EcritAnnee(std::uint32_t n, int offset, std::string_view s);
    std::string LitTextePaire(std::uint32_t pos);
    std::vector<std::pair<std::uint32_t, std::string>> PairesTexte(std::string_view liste);
    void OublieCle(std::uint32_t n);
    std::string Annee(const char* p) const;

    // --- Marriage cache
    void LitMariage(std::uint32_t m);
    char* EnregMariage();
    void EcritBlocMariage(int slot);
    void EcritNumeroMariage(std::uint32_t m, int offset, std::uint32_t p);
    void EcritAnneeMariage(std::uint32_t m, int offset, std::string_view s);
    void EcritMariages();
    void RazMariages();

    // --- Two-slot block caches: keyword entries, documents, events
    struct PaireBlocs {
        Table table;
        std::size_t taille;
        std::array<Slot, 2> slots{};
        int enCours = 0; // the slot last used
    };
    // The block's bytes in one of the two slots, loaded on demand.
    std::string& BlocPaire(PaireBlocs& p, std::uint32_t bloc, int* slot = nullptr);
    void EcritSlotPaire(PaireBlocs& p, int slot);
    void EcritPaire(PaireBlocs& p);
    void RazPaire(PaireBlocs& p);
    std::uint32_t LitPosPaire(PaireBlocs& p, std::uint32_t n, std::uint32_t parBloc);
    void EcritPosPaire(PaireBlocs& p, std::uint32_t n, std::uint32_t parBloc,
                       std::string_view octets);
    std::string LitListeEvt(std::uint32_t position, bool personnes);
    void EcritListeEvt(std::uint32_t e, std::string_view liste, bool personnes);
    void NouvelEvt(std::uint32_t e, long date, std::string_view texte);
    void RoleEvt(std::uint32_t e, std::uint32_t p, const std::string& role);
    void Veufs(std::uint32_t n, std::uint32_t e);
    std::uint32_t PersonneDeListe(std::uint32_t n, std::uint32_t pos, std::uint32_t premier);
    void MajListeRubrique(std::uint32_t k, const std::string& ancienne,
                          const std::string& nouvelle);
    std::uint32_t ChercheMot(const std::string& liste, const std::string& mot, std::size_t* rang);
    std::uint32_t NouvelleEntree(const std::string& mot, const std::string& personnes,
                                 bool motDabord);
    void EcritPersonnesMot(std::uint32_t k, const std::string& personnes);
    std::uint32_t EntreeOuNouvelle(std::string& liste, const std::string& mot, std::uint32_t n);

    PaireBlocs paireMots_{Table::Mots, 4800};
    PaireBlocs paireDocs_{Table::Documents, 4000};
    PaireBlocs paireEvts_{Table::Evenements, 4000};
    std::uint32_t teteEvtNo_ = 0;
    TeteEvt teteEvt_;
    std::uint32_t texteEvtNo_ = 0;
    std::array<std::string, 4> texteEvt_; // place, title, tag, fourth field
    std::pair<std::uint32_t, std::string> cachePersEvt_, cacheDocsEvt_;
    TableTemoins temoins_;
    std::uint32_t docNo_ = 0;
    std::uint32_t docNote_ = 0;
    std::string docTitre_, docFichier_, docType_;
    std::vector<std::string> typesDocuments_;
    // Batch of the keyword index: symbol + word, with (birth key, person).
    struct Lot;
    std::shared_ptr<Lot> lot_;

    SystemeFichiers& fs_;
    const Parametres& parametres_;
    Signaleur signaleur_;
    CheminsBase chemins_;
    std::unique_ptr<Fichier> fichier_;
    std::unique_ptr<Fichier> journal_;
    bool journalASynchroniser_ = false;
    bool journalNouveau_ = false;
    std::map<std::uint64_t, std::uint64_t> couvert_; // journaled byte ranges [a, b)
    std::uint32_t zoneFinValidee_ = 0;               // file end of the last commit
    std::string tampon_;                             // appends not yet written
    std::uint32_t debutTampon_ = 0;                  // position of tampon_[0]
    // Bytes of the file read ahead for small reads; dropped at every write.
    static constexpr std::size_t kFenetre = 64 * 1024, kLectureGroupee = 4096;
    std::string fenetre_;
    std::uint64_t debutFenetre_ = 0;
    std::uint64_t finLue_ = 0; // end of the last small read
    void OublieFenetre() { fenetre_.clear(); }
    Entete entete_;
    std::array<TableBlocs, 8> tables_;
    std::array<std::uint32_t, 50> rubriques_{};
    std::uint32_t rubriqueCache_ = 0;
    std::string rubriqueTexte_;
    std::uint32_t rubriqueListe_ = 0;
    bool marqueModif_ = false;
    bool lectureSeule_ = false;
    int minutes_ = 0;

    TableTri triPersonnes_, triDocuments_, triEvenements_;
    // Comparison strings by person number, packed in one arena: an entry
    // of length 0 is not computed yet.
    std::string clesArene_;
    std::vector<std::uint32_t> cleDebut_;
    std::vector<std::uint16_t> cleLongueur_;
    std::size_t clesVivantes_ = 0;
    std::string cleHorsCache_;
    std::uint32_t dernierePlace_ = 1;
    std::uint32_t differeDepuis_ = 0; // first place of the persons not yet placed, 0 for none

    std::array<Slot, 20> slots_;
    std::array<int, 20> ordre_{};
    int slotCourant_ = -1;
    int enregCourant_ = 0;
    std::uint32_t noCourant_ = 0;
    std::uint32_t identiteNo_ = 0;
    std::string identiteBrute_;
    std::array<std::string, 5> identite_;
    std::pair<std::uint32_t, std::string> cacheNote_, cacheMariages_, cacheEnfants_, cacheLiens_,
        cacheEvts_, cacheDocs_;

    std::array<Slot, 40> slotsM_;
    std::array<int, 40> ordreM_{};
    int slotCourantM_ = -1;
    int enregCourantM_ = 0;
    std::uint32_t noCourantM_ = 0;
    std::pair<std::uint32_t, std::string> cacheNoteMariage_;

    Compteurs stats_;
};

} // namespace sylvane
