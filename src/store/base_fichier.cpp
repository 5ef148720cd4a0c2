// The base file proper: header, block tables, journal, commit and lifecycle.
#include "store/base.h"

#include "store/pack.h"
#include "text/mots.h"

#include <algorithm>

namespace sylvane {
namespace {

constexpr std::uint32_t kTailleEntete = 500;
constexpr std::size_t kTailleJournal = 1000;
constexpr std::size_t kTampon = 1 << 20;
const char* const kBanniere = "[Sylvane Version 2001.0]";

struct FormeTable {
    std::uint32_t offsetEntete; // 1-based header position of the table's place
    std::uint32_t diviseur;     // records per block
};

// Per table kind: header field and records per block.
constexpr FormeTable kFormes[8] = {
    {73, 100}, {77, 100}, {154, 400}, {85, 1000}, {93, 1000}, {81, 1000}, {89, 1000}, {97, 1000}};

void Pose4(std::string& s, std::uint32_t pos1, std::uint32_t v) {
    s.replace(pos1 - 1, 4, Pack4(v));
}

} // namespace

CheminsBase DeriveChemins(const std::string& chemin) {
    CheminsBase c;
    const auto dossier = chemin.find_last_of("/\\");
    const auto point = chemin.find('.', dossier == std::string::npos ? 0 : dossier + 1);
    std::string souche = point == std::string::npos ? chemin : chemin.substr(0, point);
    c.base = souche + ".sv2";
    c.svr = souche + ".svr";
    c.journal = souche + ".log";
    c.gedcom = souche + ".ged";
    auto slash = souche.find_last_of("/\\");
    c.titre = slash == std::string::npos ? souche : souche.substr(slash + 1);
    return c;
}

std::string OctetsEntete(const Entete& e, const std::array<std::uint32_t, 8>& places) {
    std::string h(kTailleEntete, '\0');
    std::string b = e.banniere.substr(0, 30);
    b.resize(30, ' ');
    h.replace(0, 30, b);
    Pose4(h, 31, e.zoneFin);
    Pose4(h, 35, e.nbPersonnes);
    Pose4(h, 39, e.maxPersonne);
    Pose4(h, 43, e.maxMariage);
    h[47] = e.modeTri;
    h.replace(48, 2, Pack2(e.nbRubriques));
    Pose4(h, 53, e.nbMots);
    Pose4(h, 57, e.maxDocument);
    Pose4(h, 61, e.nbDocuments);
    Pose4(h, 65, e.maxEvenement);
    Pose4(h, 69, e.nbEvenements);
    for (int k = 0; k < 8; ++k) Pose4(h, kFormes[k].offsetEntete, places[k]);
    h[101] = e.premierPrenom == '1' ? '1' : '0';
    h[102] = e.particules == '1' ? '1' : '0';
    Pose4(h, 104, e.posRubriques);
    for (int i = 0; i < 10; ++i) {
        h[108 + 2 * i] = e.rubriquesPersonne[i].symbole;
        h[109 + 2 * i] = e.rubriquesPersonne[i].drapeau;
        h[128 + 2 * i] = e.rubriquesMariage[i].symbole;
        h[129 + 2 * i] = e.rubriquesMariage[i].drapeau;
    }
    h[148] = e.documentTitre ? '1' : '0';
    Pose4(h, 150, e.documentTitre);
    return h;
}

Base::Base(SystemeFichiers& fs, const Parametres& parametres)
    : fs_(fs), parametres_(parametres) {
    temoins_ =
        TableTemoinsDe(parametres.temoins.empty() ? TemoinsParDefaut() : parametres.temoins);
}

Base::~Base() {
    // A base still open here was not closed by its owner: keep the journal
    // so that the next open falls back on the last commit.
    fichier_.reset();
    journal_.reset();
}

void Base::Signale(const std::string& texte) const {
    if (signaleur_) signaleur_(texte);
}

bool Base::Modifiee() const {
    return marqueModif_ || triPersonnesModifie || triDocumentsModifie || triEvenementsModifie;
}

// --- Raw access -------------------------------------------------------------

void Base::ViderTampon() {
    if (tampon_.empty()) return;
    OublieFenetre();
    fichier_->ecrire(debutTampon_ - 1, tampon_);
    tampon_.clear();
}

std::string Base::Lire(std::uint32_t position, std::size_t n) {
    if (position == 0 || !fichier_) return {};
    if (!tampon_.empty() && position >= debutTampon_ &&
        position - debutTampon_ < tampon_.size()) {
        // Bytes just appended (a list read back while it grows): they come
        // from memory, followed by what the file holds behind them, as a
        // write of the appends would leave it.
        std::string r = tampon_.substr(position - debutTampon_, n);
        if (r.size() < n) r += fichier_->lire(debutTampon_ - 1 + tampon_.size(), n - r.size());
        return r;
    }
    if (!tampon_.empty() && position + n > debutTampon_) ViderTampon();
    if (n > kLectureGroupee) return fichier_->lire(position - 1, n);
    // Small reads that follow one another through the file (the scans that
    // walk the persons in the order they were made) are served from a
    // window read ahead; a read far from the one before goes alone.
    const std::uint64_t debut = position - 1;
    if (fenetre_.empty() || debut < debutFenetre_ ||
        debut + n > debutFenetre_ + fenetre_.size()) {
        // A text read by a chunk longer than itself runs over the next
        // text: a read that starts inside the last one and ends beyond it
        // goes on through the file too.
        const bool suite = debut + n > finLue_ && debut <= finLue_ + kLectureGroupee;
        finLue_ = debut + n;
        if (!suite) return fichier_->lire(debut, n);
        fenetre_ = fichier_->lire(debut, kFenetre);
        debutFenetre_ = debut;
        if (fenetre_.size() < n) return fenetre_;
    }
    finLue_ = debut + n;
    return fenetre_.substr(debut - debutFenetre_, n);
}

// "#" ends every text of the file, and the earlier program kept it out of
// every value (its editors blank it, its imports make it "*"). A text of
// this program may hold one, since a character Windows-1252 can't hold is
// kept as a reference "&#1047;". Inside a text, "#" is written as the byte
// 0x1F (the control "unit separator") followed by "*", and a 0x1F of the
// text as two 0x1F, so that "#" stays the one end of a text and a base
// with escapes keeps its structure for the earlier program (which shows a
// control and "*" where "#" stood).
// A base of the earlier program reads as before: no keyboard types 0x1F
// into its fields, GEDCOM allows no control but the tab in a value, and
// none of its conversions makes one. Should one be there all the same, a
// 0x1F not followed by "*" or 0x1F reads as itself; only the pairs change.
namespace {
constexpr char kEchappe = '\x1F';
}

std::string TexteDansFichier(std::string_view texte) {
    std::string r;
    r.reserve(texte.size() + 1);
    for (char c : texte) {
        if (c == '#') {
            r += kEchappe;
            r += '*';
        } else {
            if (c == kEchappe) r += kEchappe;
            r += c;
        }
    }
    r += '#';
    return r;
}

std::string TexteDuFichier(std::string_view stocke) {
    if (stocke.find(kEchappe) == std::string_view::npos) return std::string(stocke);
    std::string r;
    r.reserve(stocke.size());
    for (std::size_t i = 0; i < stocke.size(); ++i) {
        const char c = stocke[i];
        const char suivant = i + 1 < stocke.size() ? stocke[i + 1] : '\0';
        if (c == kEchappe && (suivant == '*' || suivant == kEchappe)) {
            r += stocke[++i] == '*' ? '#' : kEchappe;
            continue;
        }
        r += c;
    }
    return r;
}

std::string Base::LireTexte(std::uint32_t position, std::size_t morceau, std::size_t limite,
                            bool* trop) {
    if (trop) *trop = false;
    if (position == 0 || !fichier_) return {};
    std::string r;
    std::uint32_t p = position;
    for (;;) {
        std::string c = Lire(p, morceau);
        auto d = c.find('#');
        if (d != std::string::npos) {
            r.append(c, 0, d);
            break;
        }
        r += c;
        if (limite && r.size() >= limite) {
            if (trop) *trop = true;
            break;
        }
        if (c.size() < morceau) break; // end of file
        p += static_cast<std::uint32_t>(c.size());
    }
    if (limite && r.size() > limite) r.resize(limite);
    return TexteDuFichier(r);
}

std::uint32_t Base::Ajouter(std::string_view donnees) {
    if (std::uint64_t(entete_.zoneFin) + donnees.size() >= 0xFFFFFFF0u)
        throw ErreurES(chemins_.base, "la base a atteint sa taille maximale (4 Go) : "
                                      "réorganisez-la");
    std::uint32_t pos = entete_.zoneFin + 1;
    if (tampon_.empty()) debutTampon_ = pos;
    tampon_.append(donnees);
    entete_.zoneFin += static_cast<std::uint32_t>(donnees.size());
    marqueModif_ = true;
    if (tampon_.size() >= kTampon) ViderTampon();
    return pos;
}

std::uint32_t Base::AjouteTexte(std::string_view texte, bool vide) {
    if (texte.empty() && !vide) return 0;
    return Ajouter(TexteDansFichier(texte));
}

bool Base::Couvert(std::uint64_t debut, std::uint64_t fin) const {
    auto it = couvert_.upper_bound(debut);
    if (it == couvert_.begin()) return false;
    --it;
    return it->first <= debut && it->second >= fin;
}

void Base::Journaliser(std::uint64_t debut, std::uint64_t fin) {
    // Offsets are 0-based; only what the last commit knows needs a copy.
    fin = std::min<std::uint64_t>(fin, zoneFinValidee_);
    if (debut >= fin || Couvert(debut, fin)) return;
    if (!journal_) {
        journal_ = fs_.ouvrir(chemins_.journal, Mode::Creation);
        journalNouveau_ = true;
    }
    std::uint64_t fj = journal_->taille();
    fj -= fj % (kTailleJournal + 4);
    std::string lot;
    std::uint64_t nb = (fin - debut + kTailleJournal - 1) / kTailleJournal;
    for (std::uint64_t i = 0; i < nb; ++i) {
        std::uint64_t off = debut + i * kTailleJournal;
        std::string avant = fichier_->lire(off, kTailleJournal);
        avant.resize(kTailleJournal, '\0');
        lot += Pack4(static_cast<std::uint32_t>(off + 1));
        lot += avant;
    }
    journal_->ecrire(fj, lot);
    journalASynchroniser_ = true;
    // Merge [debut, debut + nb * 1000) into the covered ranges.
    std::uint64_t a = debut, b = debut + nb * kTailleJournal;
    auto it = couvert_.upper_bound(a);
    if (it != couvert_.begin()) {
        auto p = std::prev(it);
        if (p->second >= a) {
            a = p->first;
            b = std::max(b, p->second);
            it = couvert_.erase(p);
        }
    }
    while (it != couvert_.end() && it->first <= b) {
        b = std::max(b, it->second);
        it = couvert_.erase(it);
    }
    couvert_[a] = b;
}

void Base::SynchroniserJournal() {
    if (journalASynchroniser_ && journal_) {
        journal_->synchroniser();
        journalASynchroniser_ = false;
        // A new journal's name must be durable too, or a power loss could
        // take the journal away and leave the overwritten blocks.
        if (journalNouveau_) {
            fs_.synchroniserDossier(chemins_.journal);
            journalNouveau_ = false;
        }
    }
}

void Base::SauveAvant(std::uint32_t position, std::uint32_t taille) {
    Journaliser(position - 1, std::uint64_t(position - 1) + taille);
}

void Base::EcrireEnPlace(std::uint32_t position, std::string_view donnees) {
    if (!tampon_.empty() && position + donnees.size() > debutTampon_) ViderTampon();
    Journaliser(position - 1, std::uint64_t(position - 1) + donnees.size());
    SynchroniserJournal();
    OublieFenetre();
    fichier_->ecrire(position - 1, donnees);
    marqueModif_ = true;
}

// --- Block tables -----------------------------------------------------------

bool Base::ConditionTable(Table t) const {
    switch (t) {
    case Table::Personnes:
    case Table::TriPersonnes: return entete_.nbPersonnes != 0;
    case Table::Mariages: return entete_.maxMariage != 0;
    case Table::Mots: return entete_.nbMots != 0;
    case Table::Documents:
    case Table::TriDocuments: return entete_.nbDocuments != 0;
    case Table::Evenements:
    case Table::TriEvenements: return entete_.nbEvenements != 0;
    }
    return false;
}

std::uint32_t Base::EntreesTable(Table t) const {
    std::uint32_t compte = 0;
    switch (t) {
    case Table::Personnes: compte = entete_.maxPersonne; break;
    case Table::Mariages: compte = entete_.maxMariage; break;
    case Table::Mots: compte = entete_.nbMots; break;
    case Table::Documents: compte = entete_.maxDocument; break;
    case Table::Evenements: compte = entete_.maxEvenement; break;
    case Table::TriPersonnes: compte = entete_.nbPersonnes; break;
    case Table::TriDocuments: compte = entete_.nbDocuments; break;
    case Table::TriEvenements: compte = entete_.nbEvenements; break;
    }
    // The old program computed (count - 1) / size + 1 in signed arithmetic:
    // a count of 0 gives 0 + 1 = 1 entry... but only under the condition,
    // which excludes 0 for every table but persons (highest number 0 with
    // live persons is a damaged header: read one entry).
    return compte == 0 ? 1 : (compte - 1) / kFormes[static_cast<int>(t)].diviseur + 1;
}

std::uint32_t Base::PositionBloc(Table t, std::uint32_t bloc) {
    auto& tb = tables_[static_cast<int>(t)];
    if (bloc == 0) return 0;
    if (bloc > tb.positions.size()) {
        tb.deplacee = true;
        return 0;
    }
    return tb.positions[bloc - 1];
}

void Base::EcritBlocTable(Table t, std::uint32_t bloc, std::string_view donnees) {
    auto& tb = tables_[static_cast<int>(t)];
    std::uint32_t pos = PositionBloc(t, bloc);
    if (pos == 0) {
        pos = Ajouter(donnees);
        if (tb.positions.size() < bloc) tb.positions.resize(bloc, 0);
        tb.positions[bloc - 1] = pos;
    } else {
        EcrireEnPlace(pos, donnees);
    }
    marqueModif_ = true;
}

void Base::LitTables() {
    const std::uint64_t taille = fichier_->taille();
    for (int k = 0; k < 8; ++k) {
        auto t = static_cast<Table>(k);
        auto& tb = tables_[k];
        tb = TableBlocs{};
        if (!ConditionTable(t)) continue;
        std::uint32_t place = Unpack4(Lire(kFormes[k].offsetEntete, 4));
        std::uint64_t n = EntreesTable(t);
        // Never read beyond the file: a damaged header gives a short table.
        if (place == 0 || place > taille) n = 0;
        else n = std::min<std::uint64_t>(n, (taille - (place - 1)) / 4);
        tb.place = place;
        std::string o = Lire(place, static_cast<std::size_t>(n * 4));
        tb.positions.resize(o.size() / 4);
        for (std::size_t i = 0; i < tb.positions.size(); ++i) {
            tb.positions[i] = Unpack4(o, i * 4);
            // Beyond the file or inside the header: damaged.
            if (tb.positions[i] > taille || tb.positions[i] <= kTailleEntete) tb.positions[i] = 0;
        }
    }
    // A count that the table read can't hold is damaged: numbers beyond the
    // table would read as empty records anyway, and a huge count would make
    // every structure sized by it huge.
    auto borne = [this](Table t, std::uint32_t& compte) {
        const auto& tb = tables_[static_cast<int>(t)];
        if (!ConditionTable(t)) return;
        std::uint64_t max = std::uint64_t(tb.positions.size()) * kFormes[static_cast<int>(t)].diviseur;
        if (compte > max) compte = static_cast<std::uint32_t>(max);
    };
    borne(Table::Personnes, entete_.maxPersonne);
    borne(Table::Mariages, entete_.maxMariage);
    borne(Table::Mots, entete_.nbMots);
    borne(Table::Documents, entete_.maxDocument);
    borne(Table::Evenements, entete_.maxEvenement);
    // Without a table, a highest number is only the next number to give.
    const std::uint64_t plafond = (taille / 4 + 1) * 100;
    for (std::uint32_t* c : {&entete_.maxPersonne, &entete_.maxMariage, &entete_.maxDocument,
                             &entete_.maxEvenement, &entete_.nbMots})
        if (*c > plafond) *c = static_cast<std::uint32_t>(plafond);
}

// --- Header -----------------------------------------------------------------

void Base::LitEntete() {
    std::string h = Lire(1, kTailleEntete);
    h.resize(kTailleEntete, '\0');
    Entete e;
    e.banniere = TrimDroite(h.substr(0, 30));
    e.zoneFin = Unpack4(h, 30);
    e.nbPersonnes = Unpack4(h, 34);
    e.maxPersonne = Unpack4(h, 38);
    e.maxMariage = Unpack4(h, 42);
    e.modeTri = h[47];
    if (e.modeTri != '0' && e.modeTri != '1' && e.modeTri != '2') e.modeTri = '0';
    e.nbRubriques = std::min<std::uint32_t>(Unpack2(h, 48), 50);
    e.nbMots = Unpack4(h, 52);
    e.maxDocument = Unpack4(h, 56);
    e.nbDocuments = Unpack4(h, 60);
    e.maxEvenement = Unpack4(h, 64);
    e.nbEvenements = Unpack4(h, 68);
    e.premierPrenom = h[101] == '1' ? '1' : '0';
    e.particules = h[102] == '1' ? '1' : '0';
    e.posRubriques = Unpack4(h, 103);
    for (int i = 0; i < 10; ++i) {
        e.rubriquesPersonne[i].symbole = h[108 + 2 * i];
        e.rubriquesPersonne[i].drapeau = h[109 + 2 * i];
        e.rubriquesMariage[i].symbole = h[128 + 2 * i];
        e.rubriquesMariage[i].drapeau = h[129 + 2 * i];
    }
    e.documentTitre = h[148] == '1' ? Unpack4(h, 149) : 0;
    entete_ = e;

    // Appends go to the end of the file, and never into the header. A
    // damaged end pointer would otherwise wrap around or write over live
    // data; what a crash left beyond the committed end stays as garbage
    // until the next reorganisation.
    const std::uint64_t taille = fichier_->taille();
    entete_.zoneFin = static_cast<std::uint32_t>(
        std::min<std::uint64_t>(std::max<std::uint64_t>(taille, kTailleEntete), 0xFFFFFF00u));
    zoneFinValidee_ = entete_.zoneFin;

    rubriques_.fill(0);
    // A rubric table beyond the file is damaged: it gets a new place at the
    // next commit rather than a write far behind the end of the file.
    if (std::uint64_t(entete_.posRubriques) + 199 > taille) entete_.posRubriques = 0;
    if (entete_.posRubriques != 0) {
        std::string r = Lire(entete_.posRubriques, 200);
        for (std::size_t k = 0; k < 50 && k * 4 + 4 <= r.size(); ++k)
            rubriques_[k] = Unpack4(r, k * 4);
    }
    rubriqueCache_ = 0;
    LitTables();
}

void Base::EcritEntete() {
    // 1. The rubric table, in place.
    {
        std::string r;
        for (auto p : rubriques_) r += Pack4(p);
        if (entete_.posRubriques != 0) EcrireEnPlace(entete_.posRubriques, r);
        else entete_.posRubriques = Ajouter(r);
    }
    // 2. The tables, in the order of the old program.
    static constexpr Table ordre[8] = {Table::TriPersonnes, Table::Personnes,  Table::Mariages,
                                       Table::Mots,         Table::Documents,  Table::TriDocuments,
                                       Table::Evenements,   Table::TriEvenements};
    for (Table t : ordre) {
        auto& tb = tables_[static_cast<int>(t)];
        if (!ConditionTable(t)) {
            tb.place = 0;
            continue;
        }
        std::string o;
        o.reserve(tb.positions.size() * 4);
        for (auto p : tb.positions) o += Pack4(p);
        if (tb.deplacee || tb.place == 0) {
            tb.place = o.empty() ? 0 : Ajouter(o);
            tb.deplacee = false;
        } else if (!o.empty()) {
            EcrireEnPlace(tb.place, o);
        }
    }
    // 3. The header, in one piece, after everything it names is durable.
    std::array<std::uint32_t, 8> places{};
    for (int k = 0; k < 8; ++k) places[k] = tables_[k].place;
    const std::string h = OctetsEntete(entete_, places);

    ViderTampon();
    Journaliser(0, kTailleEntete);
    SynchroniserJournal();
    // No sync between the data and the header: the old header is in the
    // synced journal, which lives until the one sync below has made data and
    // header durable together. A loss before it replays the old header, and
    // the old header names none of the new bytes.
    OublieFenetre();
    fichier_->ecrire(0, h);
    fichier_->synchroniser();
    zoneFinValidee_ = entete_.zoneFin;
    // 4. Only now is the previous state given up.
    RazJournal();
}

void Base::RazJournal() {
    journal_.reset();
    journalASynchroniser_ = false;
    couvert_.clear();
    for (auto& tb : tables_) tb.deplacee = false;
    fs_.supprimer(chemins_.journal);
    fs_.synchroniserDossier(chemins_.journal);
}

void RejoueJournal(SystemeFichiers& fs, Fichier& base, const std::string& journal) {
    std::string j = lireTout(fs, journal);
    const std::size_t r = kTailleJournal + 4;
    const std::size_t nb = j.size() / r; // a short final record is skipped
    // A record holds bytes the base had at its last commit, so it starts
    // inside the file; one that starts past its end was damaged, and
    // writing it would grow the base by as much as its position says.
    const std::uint64_t taille = base.taille();
    // Newest record first, so that the oldest copy of a byte, which is the
    // committed one, is the one that stays.
    for (std::size_t i = nb; i-- > 0;) {
        std::uint32_t pos = Unpack4(j, i * r);
        if (pos == 0) continue; // a record that never reached the disk
        if (pos - 1 >= taille) continue;
        base.ecrire(pos - 1, std::string_view(j).substr(i * r + 4, kTailleJournal));
    }
    base.synchroniser();
    // The removal needs no folder sync of its own. Should it be lost, the
    // journal is replayed once more at the next open, which writes the bytes
    // the base already holds: nothing can have changed the base in between,
    // for every commit first makes a journal of that same name durable with
    // a folder sync, and every replacement of the file syncs the folder.
    fs.supprimer(journal);
}

void Base::RejoueJournal() {
    OublieFenetre();
    sylvane::RejoueJournal(fs_, *fichier_, chemins_.journal);
}

void RemplaceBase(SystemeFichiers& fs, const std::string& nouvelle, const CheminsBase& cible) {
    std::unique_ptr<Fichier> ancienne;
    if (fs.existe(cible.base)) {
        ancienne = fs.ouvrir(cible.base, Mode::LectureEcriture);
        if (!ancienne->verrouiller()) throw ErreurBaseOccupee(cible.base);
        if (fs.existe(cible.journal)) RejoueJournal(fs, *ancienne, cible.journal);
    } else if (fs.existe(cible.journal)) {
        // A journal without its base. Its removal is made durable before the
        // rename: a disk that kept the rename and lost the removal would
        // replay that journal over the new base.
        fs.supprimer(cible.journal);
        fs.synchroniserDossier(cible.journal);
    }
    fs.renommer(nouvelle, cible.base);
    fs.synchroniserDossier(cible.base);
}

std::unique_ptr<EcritureAtomique> SortieExport(Base& b, const std::string& chemin) {
    SystemeFichiers& fs = b.Systeme();
    if (b.EstOuverte() && (chemin == b.Chemins().base || chemin == b.Chemins().journal ||
                           fs.memeFichier(chemin, b.Chemins().base)))
        throw ErreurES(chemin, "c'est la base ouverte : choisissez un autre fichier");
    return std::make_unique<EcritureAtomique>(fs, chemin);
}

RemplacementBase::RemplacementBase(Base& b, const std::string& chemin)
    : b_(b), cible_(DeriveChemins(chemin)),
      temporaire_(DeriveChemins(CheminTemporaire(cible_.base))) {
    b_.Nouvelle(temporaire_.base);
}

RemplacementBase::~RemplacementBase() {
    if (fini_) return;
    b_.Abandonne();
    try {
        b_.Systeme().supprimer(temporaire_.journal);
        b_.Systeme().supprimer(temporaire_.base);
    } catch (const ErreurES&) { // left for the next import to reuse
    }
}

void RemplacementBase::Valide() {
    b_.FermeBase();
    RemplaceBase(b_.Systeme(), temporaire_.base, cible_);
    fini_ = true;
}

void Base::InitBase() {
    entete_ = Entete{};
    entete_.banniere = kBanniere;
    entete_.zoneFin = 501;
    entete_.modeTri = '1';
    for (auto& tb : tables_) tb = TableBlocs{};
    triPersonnes_.vider();
    triDocuments_.vider();
    triEvenements_.vider();
    OublieCles();
    rubriques_.fill(0);
    rubriqueCache_ = 0;
    entete_.posRubriques = 501;
    entete_.zoneFin += 200;
    OublieFenetre();
    fichier_->ecrire(500, std::string(200, '\0'));
    entete_.nbRubriques = 11;
    struct R { const char* tag; char symbole; };
    static constexpr R defaut[11] = {{"BIRN", '|'},  {"FNAM", '\xB6'}, {"BIRT", '$'},
                                     {"MARR", '@'},  {"DEAT", '~'},    {"OCCU", '\\'},
                                     {"CHR", '\xB0'}, {"BURI", '^'},    {"RESI", '%'},
                                     {"DIV", '\xA4'}, {"OTHR", '\xB2'}};
    std::uint32_t liste = entete_.zoneFin + 41;
    EcritRubrique(1, defaut[0].symbole, defaut[0].tag, liste);
    Ajouter(Pack4(0));
    for (int k = 1; k < 11; ++k) EcritRubrique(k + 1, defaut[k].symbole, defaut[k].tag, liste);
    for (auto& s : entete_.rubriquesPersonne) s = SlotRubrique{};
    for (auto& s : entete_.rubriquesMariage) s = SlotRubrique{};
    entete_.rubriquesPersonne[0] = {'\\', ' ', "OCCU"};
    entete_.rubriquesPersonne[1] = {'\xB0', '1', "CHR"};
    entete_.rubriquesPersonne[2] = {'^', '1', "BURI"};
    entete_.rubriquesMariage[0] = {'\xA4', '1', "DIV"};
    entete_.documentTitre = 0;
    marqueModif_ = true;
}

void Base::LitTablesTri() {
    auto lire = [this](Table t, TableTri& table, std::uint32_t nombre) {
        table.vider();
        if (nombre == 0) return;
        const auto& tb = tables_[static_cast<int>(t)];
        std::string o;
        for (auto pos : tb.positions) {
            if (pos == 0) break;
            o += Lire(pos, 4000);
            if (o.size() >= std::uint64_t(nombre) * 4) break;
        }
        if (o.size() > std::uint64_t(nombre) * 4) o.resize(std::size_t(nombre) * 4);
        table.charger(o);
    };
    lire(Table::TriPersonnes, triPersonnes_, entete_.nbPersonnes);
    lire(Table::TriDocuments, triDocuments_, entete_.nbDocuments);
    lire(Table::TriEvenements, triEvenements_, entete_.nbEvenements);
    // A live count beyond its table is damaged; the table is what is there.
    // (Clamped only now, after the tables sized by the counts were read.)
    entete_.nbPersonnes = static_cast<std::uint32_t>(
        std::min<std::size_t>(entete_.nbPersonnes, triPersonnes_.taille()));
    entete_.nbDocuments = static_cast<std::uint32_t>(
        std::min<std::size_t>(entete_.nbDocuments, triDocuments_.taille()));
    entete_.nbEvenements = static_cast<std::uint32_t>(
        std::min<std::size_t>(entete_.nbEvenements, triEvenements_.taille()));
}

bool Base::VerifieComptes() {
    // One changed count must not make the control and the reorganisation
    // drop what the tables hold: a live count short of its sort table, or
    // a highest number below a number in it, is set from the table.
    const std::uint64_t taille = fichier_->taille();
    struct Compte {
        Table tri, fiches;
        TableTri* table;
        std::uint32_t* nombre;
        std::uint32_t* max;
    };
    const Compte comptes[3] = {
        {Table::TriPersonnes, Table::Personnes, &triPersonnes_, &entete_.nbPersonnes,
         &entete_.maxPersonne},
        {Table::TriDocuments, Table::Documents, &triDocuments_, &entete_.nbDocuments,
         &entete_.maxDocument},
        {Table::TriEvenements, Table::Evenements, &triEvenements_, &entete_.nbEvenements,
         &entete_.maxEvenement}};
    auto bloc = [&](std::uint32_t p) { return p > kTailleEntete && p + 3999 <= taille; };
    bool incident = false;
    for (const Compte& c : comptes) {
        auto& tb = tables_[static_cast<int>(c.tri)];
        std::vector<std::uint32_t> blocs = tb.positions;
        std::uint32_t place = tb.place;
        if (blocs.empty()) { // a count of 0: the header may still name a table
            place = Unpack4(Lire(kFormes[static_cast<int>(c.tri)].offsetEntete, 4));
            if (place > kTailleEntete && place + 3 <= taille) blocs.push_back(Unpack4(Lire(place, 4)));
        }
        // A sound table is blank (or zero) behind its last entry, in its block.
        const std::size_t nb = *c.nombre, k = nb / 1000;
        if (k < blocs.size() && bloc(blocs[k]) && c.table->taille() == nb) {
            const std::string o = Lire(blocs[k] + std::uint32_t(nb % 1000) * 4,
                                       4000 - (nb % 1000) * 4);
            std::size_t fin = 0;
            while (fin + 4 <= o.size()) {
                const std::uint32_t v = Unpack4(o, fin);
                if (v == 0 || v == 0x20202020u) break;
                fin += 4;
            }
            if (fin) {
                c.table->charger(c.table->octets() + o.substr(0, fin));
                *c.nombre = static_cast<std::uint32_t>(c.table->taille());
                if (tb.positions.empty()) {
                    tb.positions = blocs;
                    tb.place = place;
                }
                incident = true;
            }
        }
        // The highest number covers every live record the table names.
        std::vector<std::uint32_t> au_dela;
        for (std::size_t i = 1; i <= c.table->taille(); ++i)
            if (c.table->at(i) > *c.max) au_dela.push_back(c.table->at(i));
        if (au_dela.empty()) continue;
        std::sort(au_dela.begin(), au_dela.end());
        const std::uint32_t plus = au_dela.back();
        auto& fiches = tables_[static_cast<int>(c.fiches)];
        const std::uint32_t parBloc = kFormes[static_cast<int>(c.fiches)].diviseur;
        const std::uint32_t placeFiches =
            fiches.place ? fiches.place
                         : Unpack4(Lire(kFormes[static_cast<int>(c.fiches)].offsetEntete, 4));
        const std::uint64_t voulus = (plus - 1) / parBloc + 1;
        if (fiches.positions.size() < voulus && placeFiches > kTailleEntete &&
            placeFiches + voulus * 4 - 1 <= taille) {
            const std::string o = Lire(placeFiches, static_cast<std::size_t>(voulus * 4));
            for (std::size_t i = fiches.positions.size(); i < voulus; ++i) {
                const std::uint32_t p = Unpack4(o, i * 4);
                if (p <= kTailleEntete || p > taille) break;
                fiches.positions.push_back(p);
                fiches.place = placeFiches;
            }
        }
        const std::uint64_t portee = std::uint64_t(fiches.positions.size()) * parBloc;
        const std::uint32_t ancien = *c.max;
        auto vivant = [&](std::uint32_t n) {
            if (c.fiches == Table::Documents) return PosDoc(n) != 0;
            if (c.fiches == Table::Evenements) return PosEvt(n) != 0;
            const std::string sexe = LitSexe(n);
            return !sexe.empty() && sexe != " ";
        };
        // The largest live one (a few tries: numbers of no record are the
        // control's to drop).
        for (std::size_t i = au_dela.size(), essais = 0; i-- > 0 && essais < 100; ++essais) {
            if (au_dela[i] > portee) continue;
            *c.max = au_dela[i];
            if (vivant(au_dela[i])) break;
            *c.max = ancien;
        }
        incident = incident || *c.max != ancien;
    }
    if (incident)
        Signale("Incident sur l'en-t\xEAte de la base " + chemins_.titre +
                " - R\xE9organisez votre base");
    return incident;
}

void Base::EcritUneTableTri(Table t, TableTri& table, std::uint32_t nombre) {
    auto& tb = tables_[static_cast<int>(t)];
    std::string o = table.octets();
    o.resize(std::size_t(nombre) * 4, '\0');
    for (std::size_t k = 0, c = 0; k < o.size(); k += 4000, ++c) {
        std::string morceau = o.substr(k, 4000);
        morceau.resize(4000, ' ');
        if (c < tb.positions.size() && tb.positions[c] != 0) {
            EcrireEnPlace(tb.positions[c], morceau);
        } else {
            std::uint32_t pos = Ajouter(morceau);
            if (c < tb.positions.size()) tb.positions[c] = pos;
            else tb.positions.push_back(pos);
            tb.deplacee = true;
        }
    }
}

void Base::EcritTriFiche() {
    if (!triPersonnesModifie) return;
    EcritUneTableTri(Table::TriPersonnes, triPersonnes_, entete_.nbPersonnes);
    triPersonnesModifie = false;
}

void Base::EcritTriDoc() {
    if (!triDocumentsModifie) return;
    EcritUneTableTri(Table::TriDocuments, triDocuments_, entete_.nbDocuments);
    triDocumentsModifie = false;
}

void Base::EcritTriEvt() {
    if (!triEvenementsModifie) return;
    EcritUneTableTri(Table::TriEvenements, triEvenements_, entete_.nbEvenements);
    triEvenementsModifie = false;
}

// --- Lifecycle ----------------------------------------------------------------

void Base::Ferme() {
    fichier_.reset();
    journal_.reset();
    tampon_.clear();
    couvert_.clear();
    journalASynchroniser_ = false;
    RazFiches();
    RazMariages();
    RazStores();
    marqueModif_ = triPersonnesModifie = triDocumentsModifie = triEvenementsModifie = false;
}

void Base::Nouvelle(const std::string& chemin) {
    if (EstOuverte()) FermeBase();
    chemins_ = DeriveChemins(chemin);
    lectureSeule_ = false;
    // Emptied only once locked: the file may be another process's base.
    fichier_ = fs_.ouvrir(chemins_.base, Mode::Creation);
    if (!fichier_->verrouiller()) {
        fichier_.reset();
        throw ErreurBaseOccupee(chemins_.base);
    }
    // A journal left beside an older file of this name belongs to it.
    fs_.supprimer(chemins_.journal);
    OublieFenetre();
    fichier_->tronquer(0);
    RazFiches();
    RazMariages();
    RazStores();
    zoneFinValidee_ = 0;
    InitBase();
    minutes_ = 0;
}

void Base::Ouvre(const std::string& chemin, bool lectureSeule) {
    if (EstOuverte()) FermeBase();
    chemins_ = DeriveChemins(chemin);
    lectureSeule_ = lectureSeule;
    OublieFenetre();
    fichier_ = fs_.ouvrir(chemins_.base, lectureSeule ? Mode::Lecture : Mode::LectureEcriture);
    if (!lectureSeule && !fichier_->verrouiller()) {
        fichier_.reset();
        throw ErreurBaseOccupee(chemins_.base);
    }
    try {
        if (fs_.existe(chemins_.journal)) {
            if (!lectureSeule) {
                RejoueJournal();
            } else {
                // A crash's journal is replayed under the lock; a writer at
                // work keeps its own (the reader sees its last commit but
                // for the blocks being rewritten).
                std::unique_ptr<Fichier> ecriture;
                try {
                    ecriture = fs_.ouvrir(chemins_.base, Mode::LectureEcriture);
                } catch (const ErreurES&) { // a read-only medium: read as it is
                }
                if (ecriture && ecriture->verrouiller())
                    sylvane::RejoueJournal(fs_, *ecriture, chemins_.journal);
            }
        }
        RazFiches();
        RazMariages();
        RazStores();
        tampon_.clear();
        LitEntete();
        triPersonnesModifie = triDocumentsModifie = triEvenementsModifie = false;
        LitTablesTri();
        VerifieComptes();
        OublieCles();
        if (!lectureSeule) RazJournal();
        // Find each sheet slot's tag by its symbol in the rubric table.
        for (auto* slots : {&entete_.rubriquesPersonne, &entete_.rubriquesMariage}) {
            for (auto& s : *slots) {
                if (s.symbole == ' ' || s.symbole == '\0') break;
                s.tag.clear();
                for (std::uint32_t k = 1; k <= 50; ++k) {
                    std::string r = LitRubrique(k);
                    if (!r.empty() && r[0] == s.symbole) {
                        s.tag = r.substr(1);
                        break;
                    }
                }
            }
        }
    } catch (...) {
        Ferme();
        throw;
    }
    marqueModif_ = false;
    minutes_ = 0;
}

void Base::ValideBase() {
    if (!EstOuverte() || !Modifiee()) return;
    if (lectureSeule_) throw ErreurES(chemins_.base, "base ouverte en lecture seule");
    try {
        entete_.banniere = kBanniere;
        // Copy every block that will be overwritten first, with one sync,
        // rather than one sync per block.
        for (auto& s : slots_)
            if (s.sale && s.bloc) {
                auto p = PositionBloc(Table::Personnes, s.bloc);
                if (p) Journaliser(p - 1, std::uint64_t(p - 1) + 6000);
            }
        for (auto& s : slotsM_)
            if (s.sale && s.bloc) {
                auto p = PositionBloc(Table::Mariages, s.bloc);
                if (p) Journaliser(p - 1, std::uint64_t(p - 1) + 3000);
            }
        SynchroniserJournal();
        // The order of the appends below is the layout of the file.
        EcritFiches();
        EcritMariages();
        EcritTriFiche();
        EcritPaireMots();
        EcritPaireDocuments();
        EcritTriDoc();
        EcritPaireEvenements();
        EcritTriEvt();
        EcritEntete();
        marqueModif_ = false;
    } catch (...) {
        // The file holds the last commit plus journaled changes: give the
        // base up, so that the next open replays the journal.
        Ferme();
        throw;
    }
}

void Base::FermeBase() {
    if (!EstOuverte()) return;
    ValideBase();
    Ferme();
}

void Base::Abandonne() {
    if (!EstOuverte()) return;
    Ferme();
}

void Base::MnuEnregistrer() {
    if (!EstOuverte()) return;
    // The caches stay: they are clean after the commit.
    ValideBase();
    minutes_ = 0;
}

bool Base::TicMinuterie() {
    if (!EstOuverte()) return false;
    if (minutes_ <= parametres_.frequenceSauvegarde) {
        // Forcing the system's buffers to disk: committed data is already
        // durable, so this only flushes pending appends.
        ViderTampon();
        ++minutes_;
        return false;
    }
    MnuEnregistrer();
    minutes_ = 0;
    return true;
}

} // namespace sylvane
