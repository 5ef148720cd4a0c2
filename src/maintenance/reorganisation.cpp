// Reorganisation. The new file is written beside the base as "Reorg.fic",
// complete with its header, made durable, and only then renamed over the
// base: up to the rename the base is untouched, and the rename replaces it
// in one step. Everything is read through the stores, persons in sort
// order, so that the new numbers follow the sort tables.
#include "maintenance/reorganisation.h"

#include "store/pack.h"
#include "text/messages.h"
#include "text/mots.h"

#include <memory>

namespace sylvane {
namespace {

constexpr std::size_t kTampon = 1 << 20;
const char* const kBanniere = "[Sylvane Version 2001.0]";

// The user pressed the panel's stop button.
struct Arret {};

// Writes the new file from its start: appends go through a buffer, and a
// block reserved earlier is filled in place once its records are known.
class Ecrivain {
  public:
    Ecrivain(SystemeFichiers& fs, const std::string& chemin)
        : fichier_(fs.ouvrir(chemin, Mode::LectureEcriture)), chemin_(chemin) {}

    // The next free position (1-based): ZoneFin + 1 of the new file.
    std::uint32_t Fin() const { return fin_; }

    std::uint32_t Ajoute(std::string_view d) {
        if (std::uint64_t(fin_) + d.size() >= 0xFFFFFFF0u)
            throw ErreurES(chemin_, "la base r\xE9organis\xE9" "e d\xE9passerait 4 Go");
        const std::uint32_t pos = fin_;
        tampon_.append(d);
        fin_ += static_cast<std::uint32_t>(d.size());
        if (tampon_.size() >= kTampon) Vide();
        return pos;
    }
    std::uint32_t Reserve(std::size_t n, char c = '\0') { return Ajoute(std::string(n, c)); }
    // A text and its "#"; an empty text takes no place and gets position 0.
    std::uint32_t Texte(std::string_view t) {
        return t.empty() ? 0 : Ajoute(TexteDansFichier(t));
    }

    // Fills bytes that were reserved before.
    void Pose(std::uint32_t pos, std::string_view d) {
        if (pos >= debut_) {
            tampon_.replace(pos - debut_, d.size(), d);
            return;
        }
        Vide();
        fichier_->ecrire(pos - 1, d);
    }

    void Termine() {
        Vide();
        fichier_->synchroniser();
        fichier_.reset();
    }

  private:
    void Vide() {
        if (tampon_.empty()) return;
        fichier_->ecrire(debut_ - 1, tampon_);
        debut_ += static_cast<std::uint32_t>(tampon_.size());
        tampon_.clear();
    }

    std::unique_ptr<Fichier> fichier_;
    std::string chemin_;
    std::string tampon_;
    std::uint32_t debut_ = 1; // position of tampon_[0]
    std::uint32_t fin_ = 1;
};

std::string Tableau(const std::vector<std::uint32_t>& v) {
    std::string s;
    s.reserve(v.size() * 4);
    for (auto n : v) s += Pack4(n);
    return s;
}

// A year field of 4 bytes, padded with blanks as the record writer does.
void PoseAnnee(char* p, const std::string& an) {
    for (std::size_t i = 0; i < 4; ++i) p[i] = i < an.size() ? an[i] : ' ';
}

struct Rubrique {
    std::uint32_t k = 0;
    std::string texte;         // symbol and tag
    bool avecListe = false;
    std::vector<std::uint32_t> entrees; // old entry numbers, in list order
};

class Reorganisation {
  public:
    Reorganisation(Base& b, const Interaction& io, Renumerotation& r)
        : b_(b), io_(io), r_(r), titre_(Message(545)) {}

    void Numerote();
    void Recopie(Ecrivain& w);

  private:
    void Phase(const char* nom) {
        phase_ = nom;
        io_.Montre(titre_, nom);
        if (io_.Arrete()) throw Arret{};
    }
    void Compte(std::size_t i) {
        if (i % 100 != 0) return;
        io_.Montre(titre_, phase_ + " " + std::to_string(i));
        if (io_.Arrete()) throw Arret{};
    }
    bool Vivante(std::uint32_t n) {
        if (n == 0 || n > b_.Tete().maxPersonne) return false;
        const std::string s = b_.LitSexe(n);
        return !s.empty() && s != " ";
    }
    // A packed list of numbers mapped through t, unmapped ones dropped.
    static std::string Mappe(const std::string& liste, const std::vector<std::uint32_t>& t) {
        std::string o;
        o.reserve(liste.size());
        for (std::size_t p = 0; p + 4 <= liste.size(); p += 4)
            if (std::uint32_t v = Renumerotation::De(t, Unpack4(liste, p))) o += Pack4(v);
        return o;
    }
    std::uint32_t Liste(Ecrivain& w, const std::string& l) {
        return l.empty() ? 0 : w.Ajoute(l + Pack4(0));
    }

    void RecopieRubriques(Ecrivain& w);
    void RecopieIndex(Ecrivain& w);
    void RecopiePersonnes(Ecrivain& w);
    void RecopieMariages(Ecrivain& w);
    void RecopieDocuments(Ecrivain& w);
    void RecopieEvenements(Ecrivain& w);
    void RecopieTriPersonnes(Ecrivain& w);
    std::vector<std::uint32_t> Tables(Ecrivain& w, std::uint32_t nombre, Table blocs, Table tri);
    std::uint32_t PaireTextes(Ecrivain& w, std::uint32_t n, bool evts);

    Base& b_;
    const Interaction& io_;
    Renumerotation& r_;
    std::string titre_, phase_;
    std::vector<std::uint32_t> personnes_, mariages_, documents_, evenements_, mots_;
    std::vector<Rubrique> rubriques_;
    std::array<std::uint32_t, 8> places_{};
};

void Reorganisation::Numerote() {
    const Entete& e = b_.Tete();
    r_.documents.assign(std::size_t(e.maxDocument) + 1, 0);
    r_.evenements.assign(std::size_t(e.maxEvenement) + 1, 0);
    r_.mariages.assign(std::size_t(e.maxMariage) + 1, 0);
    r_.mots.assign(std::size_t(e.nbMots) + 1, 0);
    r_.personnes.assign(std::size_t(e.maxPersonne) + 1, 0);

    Phase("Contr\xF4le Documents");
    for (std::uint32_t d = 1; d <= e.maxDocument; d += 1000) b_.PosDoc(d);
    Phase("Contr\xF4le Ev\xE9nements");
    for (std::uint32_t v = 1; v <= e.maxEvenement; v += 1000) b_.PosEvt(v);

    Phase("R\xE9organisation Documents");
    for (std::size_t i = 1; i <= b_.TableDocuments().taille(); ++i) {
        Compte(i);
        const std::uint32_t d = b_.TriDoc(i);
        if (d == 0 || d > e.maxDocument || r_.documents[d] || b_.PosDoc(d) == 0) continue;
        documents_.push_back(d);
        r_.documents[d] = static_cast<std::uint32_t>(documents_.size());
    }
    Phase("R\xE9organisation Ev\xE9nements");
    for (std::size_t i = 1; i <= b_.TableEvenements().taille(); ++i) {
        Compte(i);
        const std::uint32_t v = b_.TriEvt(i);
        if (v == 0 || v > e.maxEvenement || r_.evenements[v] || b_.PosEvt(v) == 0) continue;
        evenements_.push_back(v);
        r_.evenements[v] = static_cast<std::uint32_t>(evenements_.size());
    }
    // A marriage is reached through its husband only.
    Phase("R\xE9organisation Mariages");
    for (std::size_t i = 1; i <= b_.TablePersonnes().taille(); ++i) {
        Compte(i);
        const std::uint32_t n = b_.TriFiche(i);
        if (!Vivante(n) || b_.LitSexe(n) != "H") continue;
        for (std::uint32_t m : b_.Mariages(n)) {
            if (m > e.maxMariage || r_.mariages[m]) continue;
            mariages_.push_back(m);
            r_.mariages[m] = static_cast<std::uint32_t>(mariages_.size());
        }
    }
    Phase("R\xE9organisation Index");
    for (std::uint32_t k = 1; k <= 50; ++k) {
        if (b_.TableRubriques()[k - 1] == 0) continue;
        Rubrique r;
        r.k = k;
        r.texte = b_.LitRubrique(k);
        if (r.texte.empty()) continue; // a damaged record: dropped
        r.avecListe = b_.PosListeRubrique(k) != 0;
        const std::string liste = b_.ListeRubrique(k);
        for (std::size_t p = 0; p + 4 <= liste.size(); p += 4) {
            const std::uint32_t m = Unpack4(liste, p);
            r.entrees.push_back(m);
            if (m == 0 || m > e.nbMots || r_.mots[m]) continue;
            mots_.push_back(m);
            r_.mots[m] = static_cast<std::uint32_t>(mots_.size());
        }
        rubriques_.push_back(std::move(r));
    }
    Phase("R\xE9organisation Indices");
    for (std::size_t i = 1; i <= b_.TablePersonnes().taille(); ++i) {
        Compte(i);
        const std::uint32_t n = b_.TriFiche(i);
        if (!Vivante(n) || r_.personnes[n]) continue;
        personnes_.push_back(n);
        r_.personnes[n] = static_cast<std::uint32_t>(personnes_.size());
    }
}

void Reorganisation::RecopieRubriques(Ecrivain& w) {
    Phase("Recopie Mots-Cl\xE9s");
    std::vector<std::uint32_t> table(50, 0);
    const std::uint32_t place = w.Reserve(200);
    for (const Rubrique& r : rubriques_) {
        const std::uint32_t pos = w.Fin();
        std::string enreg = r.texte;
        if (r.avecListe) {
            enreg += '\xFF';
            enreg += Pack4(pos + 40);
        }
        enreg += '#';
        enreg.resize(40, ' '); // a 34-character tag with a list loses its "#"
        table[r.k - 1] = w.Ajoute(enreg);
        if (!r.avecListe) continue;
        std::string l;
        for (std::uint32_t m : r.entrees)
            if (std::uint32_t v = r_.Mot(m)) l += Pack4(v);
        w.Ajoute(Pack4(static_cast<std::uint32_t>(l.size() / 4)) + l);
    }
    w.Pose(place, Tableau(table));
}

void Reorganisation::RecopieIndex(Ecrivain& w) {
    Phase("Recopie Index");
    const std::size_t nb = mots_.size();
    if (nb == 0) return;
    // The block table and all the blocks come first; the words and their
    // person lists follow, in new number order.
    const std::size_t nbBlocs = (nb - 1) / 400 + 1;
    std::vector<std::uint32_t> table(nbBlocs, 0);
    places_[static_cast<int>(Table::Mots)] = w.Reserve(nbBlocs * 4);
    for (auto& place : table) place = w.Reserve(4800);
    std::vector<std::string> blocs(nbBlocs, std::string(4800, '\0'));
    for (std::size_t i = 0; i < nb; ++i) {
        const std::uint32_t k = mots_[i];
        Compte(i + 1);
        const std::uint32_t mot = w.Ajoute(TexteDansFichier(b_.LitMot(k)));
        // Mapping keeps the order, so the list stays ordered by birth key.
        const std::string personnes = Mappe(b_.PersonnesMot(k), r_.personnes);
        const std::uint32_t liste = personnes.empty() ? 0 : w.Ajoute(personnes);
        blocs[i / 400].replace((i % 400) * 12, 12,
                               Pack4(mot) +
                                   Pack4(static_cast<std::uint32_t>(personnes.size() / 4)) +
                                   Pack4(liste));
    }
    for (std::size_t bl = 0; bl < nbBlocs; ++bl) w.Pose(table[bl], blocs[bl]);
    w.Pose(places_[static_cast<int>(Table::Mots)], Tableau(table));
}

// The chunks of a sort table of the numbers 1 to `nombre`, the last one
// padded with blanks.
std::vector<std::string> MorceauxTri(std::uint32_t nombre) {
    std::vector<std::string> morceaux((nombre - 1) / 1000 + 1);
    for (std::size_t c = 0; c < morceaux.size(); ++c) {
        std::string& morceau = morceaux[c];
        morceau.reserve(4000);
        for (std::uint32_t n = static_cast<std::uint32_t>(c * 1000) + 1;
             n <= nombre && morceau.size() < 4000; ++n)
            morceau += Pack4(n);
        morceau.resize(4000, ' ');
    }
    return morceaux;
}

// The person sort table goes last, as the commit writes a table that has
// no place yet: its chunks at the end, then its chunk table.
void Reorganisation::RecopieTriPersonnes(Ecrivain& w) {
    const std::size_t nb = personnes_.size();
    if (nb == 0) return;
    std::vector<std::uint32_t> table;
    for (const std::string& m : MorceauxTri(static_cast<std::uint32_t>(nb)))
        table.push_back(w.Ajoute(m));
    places_[static_cast<int>(Table::TriPersonnes)] = w.Ajoute(Tableau(table));
}

// The head store of documents or events: the block table and the sort chunk
// table first, then the blocks, then the sort chunks; the blocks are filled
// in once the heads are written. Returns the positions of the blocks.
std::vector<std::uint32_t> Reorganisation::Tables(Ecrivain& w, std::uint32_t nombre,
                                                  Table blocs, Table tri) {
    const std::size_t nbBlocs = (nombre - 1) / 1000 + 1;
    const std::vector<std::string> morceaux = MorceauxTri(nombre);
    places_[static_cast<int>(blocs)] = w.Reserve(nbBlocs * 4);
    places_[static_cast<int>(tri)] = w.Reserve(morceaux.size() * 4);
    std::vector<std::uint32_t> table(nbBlocs, 0);
    for (auto& p : table) p = w.Reserve(4000);
    std::vector<std::uint32_t> chunks;
    for (const std::string& m : morceaux) chunks.push_back(w.Ajoute(m));
    w.Pose(places_[static_cast<int>(blocs)], Tableau(table));
    w.Pose(places_[static_cast<int>(tri)], Tableau(chunks));
    return table;
}

// The link list (evts false) or the event list of person n, with their
// texts written first; returns the list's position.
std::uint32_t Reorganisation::PaireTextes(Ecrivain& w, std::uint32_t n, bool evts) {
    const std::string l = evts ? b_.ListeEvts(n) : b_.ListeLiens(n);
    std::string o;
    for (int i = 1; static_cast<std::size_t>(i) * 8 <= l.size(); ++i) {
        const std::uint32_t ancien = Unpack4(l, static_cast<std::size_t>(i - 1) * 8);
        const std::uint32_t v = evts ? r_.Evenement(ancien) : r_.Personne(ancien);
        if (v == 0) continue;
        std::string texte = evts ? b_.RoleEvtNo(n, i) : b_.TexteLienBrutNo(n, i);
        // A role that can't be read keeps the link, named after the person.
        if (evts && texte.empty()) texte = b_.NomComplet(n);
        o += Pack4(v) + Pack4(w.Texte(texte));
    }
    return Liste(w, o);
}

void Reorganisation::RecopiePersonnes(Ecrivain& w) {
    Phase("Recopie Individus");
    const std::size_t nb = personnes_.size();
    if (nb == 0) return;
    const std::size_t nbBlocs = (nb - 1) / 100 + 1;
    std::vector<std::uint32_t> table(nbBlocs, 0);
    places_[static_cast<int>(Table::Personnes)] = w.Reserve(nbBlocs * 4);
    for (std::size_t bl = 0; bl < nbBlocs; ++bl) {
        io_.Montre(titre_, "Bloc " + std::to_string(bl + 1));
        if (io_.Arrete()) throw Arret{};
        const std::uint32_t place = w.Reserve(6000);
        table[bl] = place;
        std::string bloc(6000, '\0');
        for (std::size_t j = 0; j < 100 && bl * 100 + j < nb; ++j) {
            const std::uint32_t n = personnes_[bl * 100 + j];
            char* p = bloc.data() + j * 60;
            const std::string sexe = b_.LitSexe(n);
            p[0] = sexe.empty() ? ' ' : sexe[0];
            EcritBrut(p + 1, static_cast<std::int32_t>(r_.Personne(b_.LitPere(n))));
            EcritBrut(p + 7, static_cast<std::int32_t>(r_.Personne(b_.LitMere(n))));
            PoseAnnee(p + 13, b_.LitAnNaiss(n));
            PoseAnnee(p + 17, b_.LitAnDeces(n));
            const std::string identite = b_.LitNom(n) + ";" + b_.LitPrenom(n) + ";" +
                                         b_.LitAutrePrenom(n) + ";" + b_.LitDateNaiss(n) + ";" +
                                         b_.LitDateDeces(n);
            const std::uint32_t pIdentite = w.Texte(identite);
            const std::uint32_t pNote = w.Texte(b_.LitNote(n));
            const std::uint32_t pMariages = Liste(w, Mappe(b_.ListeMariages(n), r_.mariages));
            const std::uint32_t pEnfants = Liste(w, Mappe(b_.ListeEnfants(n), r_.personnes));
            const std::uint32_t pLiens = PaireTextes(w, n, false);
            const std::uint32_t pEvts = PaireTextes(w, n, true);
            const std::uint32_t pDocs = Liste(w, Mappe(b_.ListeDocs(n), r_.documents));
            const std::uint32_t champs[7] = {pIdentite, pNote, pMariages, pEnfants,
                                             pLiens,    pEvts, pDocs};
            for (int c = 0; c < 7; ++c)
                EcritBrut(p + 21 + 4 * c, static_cast<std::int32_t>(champs[c]));
        }
        w.Pose(place, bloc);
    }
    w.Pose(places_[static_cast<int>(Table::Personnes)], Tableau(table));
}

void Reorganisation::RecopieMariages(Ecrivain& w) {
    Phase("Recopie Mariages");
    const std::size_t nb = mariages_.size();
    if (nb == 0) return;
    const std::size_t nbBlocs = (nb - 1) / 100 + 1;
    std::vector<std::uint32_t> table(nbBlocs, 0);
    places_[static_cast<int>(Table::Mariages)] = w.Reserve(nbBlocs * 4);
    for (std::size_t bl = 0; bl < nbBlocs; ++bl) {
        io_.Montre(titre_, "Bloc " + std::to_string(bl + 1));
        if (io_.Arrete()) throw Arret{};
        const std::uint32_t place = w.Reserve(3000);
        table[bl] = place;
        std::string bloc(3000, '\0');
        for (std::size_t j = 0; j < 100 && bl * 100 + j < nb; ++j) {
            const std::uint32_t m = mariages_[bl * 100 + j];
            char* p = bloc.data() + j * 30;
            EcritBrut(p, static_cast<std::int32_t>(r_.Personne(b_.LitMari(m))));
            EcritBrut(p + 4, static_cast<std::int32_t>(r_.Personne(b_.LitFemme(m))));
            PoseAnnee(p + 8, b_.LitAnMariage(m));
            PoseAnnee(p + 12, b_.LitAnFin(m));
            EcritBrut(p + 16, static_cast<std::int32_t>(w.Texte(b_.LitNoteMariage(m))));
        }
        w.Pose(place, bloc);
    }
    w.Pose(places_[static_cast<int>(Table::Mariages)], Tableau(table));
}

void Reorganisation::RecopieDocuments(Ecrivain& w) {
    Phase("Recopie Documents");
    const std::size_t nb = documents_.size();
    if (nb == 0) return;
    const std::vector<std::uint32_t> table =
        Tables(w, static_cast<std::uint32_t>(nb), Table::Documents, Table::TriDocuments);
    const std::size_t nbBlocs = table.size();
    std::vector<std::string> blocs(nbBlocs, std::string(4000, '\0'));
    for (std::size_t i = 0; i < nb; ++i) {
        Compte(i + 1);
        const std::uint32_t d = documents_[i];
        bool trop = false;
        std::string note = b_.LireTexte(b_.NotePosDoc(d), 50, 32000, &trop);
        if (trop) {
            b_.Signale("Incident sur le document " + std::to_string(d) +
                       " - R\xE9organisez votre base");
            note.clear();
        }
        std::string texte = b_.TitreDoc(d);
        texte += '\0';
        texte += b_.FichierDoc(d);
        if (const std::string type = b_.TypeDoc(d); !type.empty()) texte += '\xFF' + type;
        const std::string tete = Pack4(w.Texte(note)) + TexteDansFichier(texte);
        blocs[i / 1000].replace((i % 1000) * 4, 4, Pack4(w.Ajoute(tete)));
    }
    for (std::size_t bl = 0; bl < nbBlocs; ++bl) w.Pose(table[bl], blocs[bl]);
}

void Reorganisation::RecopieEvenements(Ecrivain& w) {
    Phase("Recopie Ev\xE9nements");
    const std::size_t nb = evenements_.size();
    if (nb == 0) return;
    const std::vector<std::uint32_t> table =
        Tables(w, static_cast<std::uint32_t>(nb), Table::Evenements, Table::TriEvenements);
    const std::size_t nbBlocs = table.size();
    std::vector<std::string> blocs(nbBlocs, std::string(4000, '\0'));
    auto incident = [this](std::uint32_t e) {
        b_.Signale("Incident sur l'\xE9v\xE9nement " + std::to_string(e) +
                   " - R\xE9organisez votre base");
    };
    for (std::size_t i = 0; i < nb; ++i) {
        Compte(i + 1);
        const std::uint32_t e = evenements_[i];
        const TeteEvt ancienne = b_.LitTeteEvt(e);
        TeteEvt t;
        t.date = ancienne.date;
        bool trop = false;
        std::string texte = b_.LireTexte(ancienne.texte, 100, 32000, &trop);
        if (trop) incident(e), texte.clear();
        t.texte = w.Texte(texte);
        std::string note = b_.LireTexte(ancienne.note, 200, 32000, &trop);
        if (trop) incident(e), note.clear();
        t.note = w.Texte(note);
        t.personnes = Liste(w, Mappe(b_.ListePersonnesEvt(e), r_.personnes));
        t.documents = Liste(w, Mappe(b_.ListeDocsEvt(e), r_.documents));
        const std::uint32_t tete = w.Ajoute(Pack4(t.date) + Pack4(t.note) + Pack4(t.personnes) +
                                            Pack4(t.documents) + Pack4(t.texte));
        blocs[i / 1000].replace((i % 1000) * 4, 4, Pack4(tete));
    }
    for (std::size_t bl = 0; bl < nbBlocs; ++bl) w.Pose(table[bl], blocs[bl]);
}

void Reorganisation::Recopie(Ecrivain& w) {
    Phase("Recopie fichier");
    w.Reserve(500, ' ');
    RecopieRubriques(w);
    RecopieIndex(w);
    RecopiePersonnes(w);
    RecopieMariages(w);
    RecopieDocuments(w);
    RecopieEvenements(w);
    RecopieTriPersonnes(w);

    Entete e = b_.Tete();
    e.banniere = kBanniere;
    e.zoneFin = w.Fin() - 1;
    e.nbPersonnes = e.maxPersonne = static_cast<std::uint32_t>(personnes_.size());
    e.maxMariage = static_cast<std::uint32_t>(mariages_.size());
    e.nbMots = static_cast<std::uint32_t>(mots_.size());
    e.maxDocument = e.nbDocuments = static_cast<std::uint32_t>(documents_.size());
    e.maxEvenement = e.nbEvenements = static_cast<std::uint32_t>(evenements_.size());
    e.posRubriques = 501;
    e.documentTitre = r_.Document(e.documentTitre);
    w.Pose(1, OctetsEntete(e, places_));
}

// The scratch file, made for this run alone and held locked until it is the
// base: two reorganisations in one folder writing one file would swap
// their bases. The leftover of a run that died (unlocked) is removed.
std::unique_ptr<Fichier> CreeScratch(SystemeFichiers& fs, const std::string& chemin) {
    if (fs.existe(chemin)) {
        auto ancien = fs.ouvrir(chemin, Mode::LectureEcriture);
        if (!ancien->verrouiller())
            throw ErreurES(chemin, "une autre r\xE9organisation est en cours dans ce dossier");
        fs.supprimer(chemin);
    }
    auto f = fs.ouvrir(chemin, Mode::Exclusive);
    if (!f->verrouiller())
        throw ErreurES(chemin, "une autre r\xE9organisation est en cours dans ce dossier");
    return f;
}

} // namespace

void RenumeroteListeFusion(SystemeFichiers& fs, const std::string& cheminBase,
                           const Renumerotation& r) {
    const std::string souche = CheminSauvegarde(cheminBase).substr(
        0, CheminSauvegarde(cheminBase).size() - 4);
    const std::string fusion = souche + ".fus", nouvelle = souche + ".tmp";
    try {
        if (!fs.existe(fusion)) return;
        // A list of pairs of persons is a few numbers a pair: a file larger
        // than the merge form would read is no such list, and stays as it is.
        constexpr std::uint64_t kTailleMax = 64ull << 20;
        std::string texte;
        {
            const auto lu = fs.ouvrir(fusion, Mode::Lecture);
            if (lu->taille() > kTailleMax) return;
            texte = lu->lire(0, static_cast<std::size_t>(lu->taille()));
        }
        std::string sortie;
        std::size_t debut = 0;
        while (debut < texte.size()) {
            std::size_t fin = texte.find('\n', debut);
            if (fin == std::string::npos) fin = texte.size();
            const std::string ligne = Trim(texte.substr(debut, fin - debut));
            debut = fin + 1;
            std::string chiffres = ligne;
            if (!chiffres.empty() && chiffres.back() == '\r') chiffres.pop_back();
            chiffres = Trim(chiffres);
            if (chiffres.empty()) continue;
            std::uint32_t v = 0;
            for (char c : chiffres) {
                if (c < '0' || c > '9' || v > 400000000u) {
                    v = 0;
                    break;
                }
                v = v * 10 + static_cast<std::uint32_t>(c - '0');
            }
            sortie += std::to_string(r.Personne(v)) + "\r\n";
        }
        auto f = fs.ouvrir(nouvelle, Mode::Ecrasement);
        f->ecrire(0, sortie);
        f->synchroniser();
        f.reset();
        fs.supprimer(fusion);
        fs.renommer(nouvelle, fusion);
        fs.synchroniserDossier(fusion);
    } catch (const std::exception&) {
        // The merge list is a convenience: a failure leaves it as it was.
    }
}

ResultatReorganisation Reorganiser(Base& b, const Interaction& io) {
    ResultatReorganisation res;
    const Reponse reponse = io.Demande(842);
    if (reponse == Reponse::Annuler) return res;
    SystemeFichiers& fs = b.Systeme();
    const std::string chemin = b.Chemins().base;
    const std::string scratch = DossierDe(chemin) + kFichierReorg;
    std::unique_ptr<Fichier> verrou; // ours while it is held
    try {
        b.FermeBase();
        if (reponse == Reponse::Oui) CopieFichier(fs, chemin, CheminSauvegarde(chemin));
        b.Ouvre(chemin);
        verrou = CreeScratch(fs, scratch);
        Reorganisation r(b, io, res.numeros);
        r.Numerote();
        Ecrivain w(fs, scratch);
        r.Recopie(w);
        w.Termine();
        io.Montre(Message(545), "R\xE9organisation termin\xE9" "e");
        // Nothing was changed through the old base: close it as it is.
        b.Abandonne();
        RemplaceBase(fs, scratch, DeriveChemins(chemin));
        verrou.reset();
    } catch (...) {
        // The old base is still the one on disk.
        b.Abandonne();
        try {
            if (verrou) fs.supprimer(scratch);
            verrou.reset();
        } catch (const ErreurES&) {
        }
        try {
            b.Ouvre(chemin);
        } catch (const ErreurES&) {
        }
        try {
            throw;
        } catch (const Arret&) {
            res.numeros = {};
            return res;
        }
    }
    RenumeroteListeFusion(fs, chemin, res.numeros);
    b.Ouvre(chemin);
    res.fait = true;
    return res;
}

} // namespace sylvane
