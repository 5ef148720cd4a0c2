// The two readers of the exchange file: into a new base, and into the open
// base with every number shifted.
#include "exchange/svr.h"
#include "exchange/svr_commun.h"
#include "kinship/boucles.h"

#include "store/base.h"
#include "store/pack.h"
#include "text/mots.h"
#include "text/phonetique.h"
#include "text/reglages.h"
#include "text/tags.h"

#include <algorithm>
#include <cstdlib>

namespace sylvane {
namespace {

// The symbols a new rubric may take, in the order they are offered.
const std::string kReserveSymboles =
    "|\xB6$@~\\\xB0^%\xA4\xB2\xB5\xA3\xA7\xAC\xB1\xB9\xBB\xD7\xF7\x87\x88\x8B\x95\x9B";
const std::string kMariages = "{Mariages}";
const std::string kEvenements = "{Ev\xE9nements}";
constexpr std::size_t kListeMax = 200;

// The end of the file came before "[FIN]".
struct Tronque {};

bool FinSection(const std::string& l) {
    return l.rfind("[FIN", 0) == 0;
}

// "12;13;" as numbers.
std::vector<std::uint32_t> NombresPointVirgule(const std::string& l) {
    std::vector<std::uint32_t> r;
    std::size_t debut = 0;
    while (debut < l.size() && r.size() < kListeMax) {
        std::size_t fin = l.find(';', debut);
        if (fin == std::string::npos) fin = l.size();
        r.push_back(svr::Valeur(std::string_view(l).substr(debut, fin - debut), kNumeroMaxSvr));
        debut = fin + 1;
    }
    return r;
}

// The token behind `symbole` in the first line of a note, replaced.
std::string RemplaceJeton(const std::string& note, char symbole, const std::string& valeur) {
    std::size_t finLigne = note.find("\r\n");
    if (finLigne == std::string::npos) finLigne = note.size();
    const std::size_t p = note.find(symbole);
    if (p == std::string::npos || p >= finLigne) return note;
    std::size_t fin = note.find(' ', p + 1);
    if (fin == std::string::npos || fin > finLigne) fin = finLigne;
    return note.substr(0, p + 1) + valeur + note.substr(fin);
}

struct BlocPersonne {
    std::uint32_t n = 0;
    std::string identite, sexe, anNaiss, anDeces, note;
    std::uint32_t pere = 0, mere = 0;
    std::vector<std::uint32_t> docs, mariages;
    std::vector<std::pair<std::uint32_t, std::string>> liens, evts;
};

class Lecteur {
  public:
    Lecteur(Base& b, svr::Entree& in, const DialogueEchange& d, Reglages* reglages)
        : b_(b), in_(in), d_(d), reglages_(reglages), integre_(reglages == nullptr) {
        for (int c = 0; c < 256; ++c)
            traduction_[c] = static_cast<char>(c);
    }

    BilanSvr Lit() {
        if (!in_.Ligne(banniere_))
            throw ErreurLecture("fichier d'\xE9"
                                "change vide");
        recente_ = VersionRecente(banniere_);
        if (integre_) {
            const Entete& t = b_.Tete();
            H_ = (t.maxPersonne + 99) / 100 * 100; // the new numbers start a block
            D_ = t.maxDocument;
            E_ = t.maxEvenement;
            M_ = t.maxMariage;
            CreeNumeros(H_);
        }
        std::string erreur;
        bool fin = false;
        try {
            std::string l;
            while (in_.Ligne(l)) {
                if (l == "[FIN]") {
                    fin = true;
                    break;
                }
                Section(l);
            }
            if (!fin) throw Tronque{};
        } catch (const Tronque&) {
            erreur = "Le fichier d'\xE9"
                     "change s'arr\xEAte avant sa fin (ligne " +
                     std::to_string(in_.NumeroLigne()) + ") : ce qui a \xE9t\xE9 lu est gard\xE9.";
        } catch (const ErreurLecture& e) {
            erreur = std::string(e.what()) + " (ligne " + std::to_string(in_.NumeroLigne()) +
                     ") : ce qui a \xE9t\xE9 lu est gard\xE9.";
        }
        Termine(erreur.empty());
        if (!erreur.empty()) throw ErreurLecture(erreur);
        return bilan_;
    }

  private:
    std::string L() {
        std::string l;
        if (!in_.Ligne(l)) throw Tronque{};
        return l;
    }

    std::uint32_t Numero(const std::string& l, std::uint32_t decalage) {
        const std::uint32_t v = svr::Valeur(l, kNumeroMaxSvr);
        if (v > kNumeroMaxSvr) throw ErreurLecture("num\xE9ro hors limites : " + l);
        return v ? v + decalage : 0;
    }

    void Compte() {
        if (++enregistrements_ % 100 != 0) return;
        d_.Progres("Lecture " + std::to_string(enregistrements_));
        if (d_.Arret()) throw ErreurLecture("lecture interrompue");
    }

    void CreeNumeros(std::uint32_t jusqua) {
        Entete& t = b_.TeteModifiable();
        while (t.maxPersonne < jusqua) {
            t.maxPersonne += 1;
            if (b_.personneCreee_) b_.personneCreee_(t.maxPersonne);
        }
    }

    void Section(const std::string& l) {
        if (l == "[PARAMETRES]")
            Parametres_();
        else if (l == "[INI]")
            Ini();
        else if (l == "[DESCRIPTION]")
            Description();
        else if (l == "[MOTS CLES]")
            MotsCles();
        else if (l == "[DONNEES INDIVIDUS]")
            Donnees(b_.TeteModifiable().rubriquesPersonne);
        else if (l == "[DONNEES MARIAGES]")
            Donnees(b_.TeteModifiable().rubriquesMariage);
        else if (l == "[INDIVIDUS]")
            Individus();
        else if (l == "[MARIAGES]")
            Mariages();
        else if (l == "[IMAGES]")
            Images();
        else if (l == "[EVENEMENTS]")
            Evenements();
        else if (l == "[INDEX]")
            Index();
        // Any other line, an unknown section among them, is passed over.
    }

    void Parametres_() {
        const std::string a = L(), b = L();
        const char particules = a == "1" ? '1' : '0', premier = b == "1" ? '1' : '0';
        if (!integre_) {
            Entete& t = b_.TeteModifiable();
            t.particules = particules;
            t.premierPrenom = premier;
            b_.OublieCles();
        } else {
            autresParticules_ = (particules == '1') != (b_.Tete().particules == '1');
            autrePrenom_ = (premier == '1') != (b_.Tete().premierPrenom == '1');
        }
        while (!FinSection(L())) {
        }
    }

    void Ini() {
        for (std::string l = L(); !FinSection(l); l = L()) {
            if (integre_) continue;
            const auto egal = l.find('=');
            if (egal == std::string::npos) continue;
            reglages_->ecrit("Defaut", Trim(l.substr(0, egal)), Trim(l.substr(egal + 1)));
        }
    }

    void Description() {
        for (std::string l = L(); !FinSection(l); l = L()) {
            const std::uint32_t d = Numero(l, D_);
            if (d && (!integre_ || b_.Tete().documentTitre == 0)) b_.DefinitDocumentTitre(d);
        }
    }

    std::string Symboles() {
        std::string s;
        for (std::uint32_t k = 1; k <= b_.Tete().nbRubriques && k <= 50; ++k) {
            const std::string r = b_.LitRubrique(k);
            if (!r.empty()) s += r[0];
        }
        return s;
    }

    bool NouvelleRubrique(char symbole, const std::string& tag) {
        Entete& t = b_.TeteModifiable();
        if (t.nbRubriques >= 50) {
            ++bilan_.rubriquesPerdues;
            return false;
        }
        t.nbRubriques += 1;
        b_.EcritRubrique(t.nbRubriques, symbole, tag, 0);
        ++bilan_.rubriquesNouvelles;
        nouvelles_ += symbole;
        return true;
    }

    void MotsCles() {
        if (!integre_) {
            b_.TeteModifiable().nbRubriques = 0;
            b_.TableRubriques().fill(0);
        }
        for (std::string sym = L(); !FinSection(sym); sym = L()) {
            const std::string tag = L();
            if (sym.empty()) continue;
            const char s = sym[0];
            if (!integre_) {
                NouvelleRubrique(s, tag);
            } else if (recente_) {
                if (Symboles().find(s) == std::string::npos) NouvelleRubrique(s, tag);
            } else {
                FusionneAncienne(s, tag);
            }
        }
        if (!integre_) bilan_.rubriquesNouvelles = 0; // a new base has no old rubrics
    }

    // A rubric of a file of version 97.2 or before: matched by its tag.
    void FusionneAncienne(char s, const std::string& libelle) {
        if (s == '|' || s == '\xB6') return;
        const std::string tag = Conv_TagLibelle(libelle);
        const std::string symboles = Symboles();
        for (std::uint32_t k = 1; k <= b_.Tete().nbRubriques && k <= 50; ++k) {
            const std::string r = b_.LitRubrique(k);
            if (r.size() >= 1 && r.substr(1) == tag) {
                if (r[0] != s) traduction_[static_cast<unsigned char>(s)] = r[0];
                return;
            }
        }
        if (symboles.find(s) == std::string::npos) {
            NouvelleRubrique(s, tag);
            return;
        }
        for (char libre : kReserveSymboles) {
            if (symboles.find(libre) != std::string::npos) continue;
            if (NouvelleRubrique(libre, tag)) traduction_[static_cast<unsigned char>(s)] = libre;
            return;
        }
        ++bilan_.rubriquesPerdues;
    }

    std::string TagDeSymbole(char s) {
        const std::uint32_t k = b_.RubriqueDeSymbole(s);
        return k ? b_.LitRubrique(k).substr(1) : "";
    }

    void Donnees(std::array<SlotRubrique, 10>& slots) {
        if (!integre_)
            for (auto& sl : slots)
                sl = SlotRubrique{};
        std::size_t rang = 0;
        for (std::string sym = L(); !FinSection(sym); sym = L()) {
            const std::string drapeau = L();
            if (sym.empty()) continue;
            const char s = traduction_[static_cast<unsigned char>(sym[0])];
            const char f = drapeau == "1" ? '1' : ' ';
            if (!integre_) {
                if (rang < slots.size()) slots[rang++] = {s, f, TagDeSymbole(s)};
                continue;
            }
            auto libre = slots.end();
            bool present = false;
            for (auto it = slots.begin(); it != slots.end(); ++it) {
                if (it->symbole == s) {
                    present = true;
                    if (f == '1') it->drapeau = '1';
                    break;
                }
                if ((it->symbole == ' ' || it->symbole == '\0') && libre == slots.end()) libre = it;
            }
            if (!present && libre != slots.end()) *libre = {s, f, TagDeSymbole(s)};
        }
    }

    std::string Traduit(std::string note) const {
        for (char& c : note)
            c = traduction_[static_cast<unsigned char>(c)];
        return note;
    }

    std::string Note() {
        std::string note;
        bool premiere = true;
        for (std::string l = L(); l != "#"; l = L()) {
            if (!premiere) note += "\r\n";
            note += svr::LigneNoteLue(l);
            premiere = false;
        }
        return note;
    }

    void Individus() {
        for (std::string l = L(); !FinSection(l); l = L()) {
            BlocPersonne p;
            p.n = Numero(l, H_);
            p.identite = L();
            p.sexe = L();
            p.anNaiss = L();
            p.anDeces = L();
            p.pere = Numero(L(), H_);
            p.mere = Numero(L(), H_);
            p.note = Note();
            for (std::string x = L(); x != "#"; x = L())
                if (std::uint32_t d = Numero(x, D_)) p.docs.push_back(d);
            enum { Liens, LesMariages, LesEvts } mode = Liens;
            for (std::string x = L(); x != "#"; x = L()) {
                if (x == kMariages)
                    mode = LesMariages;
                else if (x == kEvenements)
                    mode = LesEvts;
                else if (mode == Liens) {
                    const std::uint32_t autre = Numero(x, H_);
                    std::string texte = L();
                    if (autre) p.liens.emplace_back(autre, std::move(texte));
                } else if (mode == LesMariages) {
                    if (std::uint32_t m = Numero(x, M_)) p.mariages.push_back(m);
                } else {
                    const auto pv = x.find(';');
                    const std::uint32_t e = Numero(x.substr(0, pv), E_);
                    const std::string role = pv == std::string::npos ? "" : x.substr(pv + 1);
                    if (e) p.evts.emplace_back(e, Conv_TagLibelle(role));
                }
            }
            if (p.n) Individu(p);
            Compte();
        }
    }

    void Individu(BlocPersonne& p) {
        const std::uint32_t n = p.n;
        if (vus_.size() <= n) vus_.resize(std::size_t(n) + 1, false);
        const bool nouveau = !vus_[n];
        vus_[n] = true;
        CreeNumeros(n);
        b_.EcritIdentite(n, p.identite);
        b_.EcritSexe(n, p.sexe.empty() ? " " : p.sexe.substr(0, 1));
        b_.EcritAnNaiss(n, p.anNaiss);
        b_.EcritAnDeces(n, p.anDeces);
        b_.EcritPere(n, p.pere == n ? 0 : p.pere);
        b_.EcritMere(n, p.mere == n ? 0 : p.mere);
        if (p.pere && p.pere != n) b_.MajEnfants(p.pere, n, 'A');
        if (p.mere && p.mere != n) b_.MajEnfants(p.mere, n, 'A');
        std::string note = Traduit(std::move(p.note));
        if (integre_ && autresParticules_)
            note = RemplaceJeton(note, '|', b_.SansParticule(b_.LitNom(n)));
        if (integre_ && autrePrenom_) {
            const std::string prenom = Trim(b_.LitPrenom(n));
            note = RemplaceJeton(note, '\xB6',
                                 b_.Tete().premierPrenom == '1' ? prenom : VersPoints(prenom));
        }
        b_.EcritNote(n, note);
        std::string l;
        for (auto d : p.docs)
            l += Pack4(d);
        b_.EcritListeDocs(n, l);
        l.clear();
        for (auto m : p.mariages)
            l += Pack4(m);
        b_.EcritListeMariages(n, l);
        b_.EcritListeLiens(n, p.liens);
        b_.EcritListeEvts(n, p.evts);
        if (nouveau) {
            // Records come in sort order: most go at the end of the table.
            const std::size_t nb = b_.TablePersonnes().taille();
            std::size_t place = nb + 1;
            if (nb && b_.Tete().modeTri != '0' &&
                std::string(b_.CleVue(b_.TriFiche(nb))) > std::string(b_.CleVue(n)))
                place = b_.PlaceFiche(n);
            b_.MajTriFiche(place, n, 'A');
            b_.TeteModifiable().nbPersonnes += 1;
            integres_.push_back(n);
            ++bilan_.personnes;
        }
    }

    void Mariages() {
        for (std::string l = L(); !FinSection(l); l = L()) {
            const std::uint32_t mari = Numero(l, H_);
            const std::uint32_t femme = Numero(L(), H_);
            const std::string an = L(), anFin = L();
            const std::string note = Note();
            const std::uint32_t m = M_ + ++bilan_.mariages;
            b_.EcritMari(m, mari);
            b_.EcritFemme(m, femme);
            b_.EcritAnMariage(m, an);
            b_.EcritAnFin(m, anFin);
            b_.EcritNoteMariage(m, Traduit(note));
            Entete& t = b_.TeteModifiable();
            t.maxMariage = std::max(t.maxMariage, m);
            Compte();
        }
    }

    void Images() {
        for (std::string l = L(); !FinSection(l); l = L()) {
            const std::uint32_t d = Numero(l, D_);
            const std::string titre = L(), fichier = L();
            const std::string note = Traduit(Note());
            if (d == 0) continue;
            const bool nouveau = b_.PosDoc(d) == 0;
            std::string tete = Pack4(b_.AjouteTexte(note));
            tete += titre;
            tete += '\0';
            tete += fichier;
            b_.EcritDoc(d, tete);
            Entete& t = b_.TeteModifiable();
            t.maxDocument = std::max(t.maxDocument, d);
            if (nouveau) {
                TableTri& tri = b_.TableDocuments();
                const std::size_t nb = tri.taille();
                std::size_t place = nb + 1;
                if (nb && CleMot(b_.TitreDoc(tri.at(nb))) > CleMot(titre)) place = b_.PlaceDoc(d);
                tri.inserer(place, d);
                t.nbDocuments += 1;
                ++bilan_.documents;
            }
            Compte();
        }
    }

    void Evenements() {
        for (std::string l = L(); !FinSection(l); l = L()) {
            const std::uint32_t e = Numero(l, E_);
            const std::string date = L(), lieu = L(), tag = L(), titre = L();
            const std::string personnes = L(), docs = L();
            const std::string note = Traduit(Note());
            if (e == 0) continue;
            const bool nouveau = b_.PosEvt(e) == 0;
            long valeur = std::strtol(date.c_str(), nullptr, 10);
            valeur = std::clamp(valeur, -1000000L, 100000000L);
            TeteEvt tete;
            b_.EcritTeteEvt(e, &tete);
            b_.EcritDateEvt(e, valeur);
            std::string texte = lieu;
            texte += '\0';
            texte += titre;
            texte += '\0';
            texte += Conv_TagLibelle(tag);
            b_.EcritEvt(e, texte);
            b_.EcritNoteEvt(e, note);
            // Each addition goes in front: the lists are given backwards.
            auto ps = NombresPointVirgule(personnes);
            for (auto it = ps.rbegin(); it != ps.rend(); ++it)
                if (*it) b_.MajPersonnesEvt(e, *it + H_, 'A');
            auto ds = NombresPointVirgule(docs);
            for (auto it = ds.rbegin(); it != ds.rend(); ++it)
                if (*it) b_.MajDocsEvt(e, *it + D_, 'A');
            Entete& t = b_.TeteModifiable();
            t.maxEvenement = std::max(t.maxEvenement, e);
            if (nouveau) {
                TableTri& tri = b_.TableEvenements();
                const std::size_t nb = tri.taille();
                std::size_t place = nb + 1;
                if (nb && b_.DateEvt(tri.at(nb)) > valeur) place = b_.PlaceEvt(e);
                tri.inserer(place, e);
                t.nbEvenements += 1;
                ++bilan_.evenements;
            }
            Compte();
        }
    }

    void Index() {
        for (std::string l = L(); !FinSection(l); l = L())
            if (!l.empty() && !integre_) index_ += l[0];
    }

    void Termine(bool complet) {
        // A file can hold a loop of ancestry (a person his own ancestor):
        // its closing link is dropped, as a GEDCOM import does.
        bilan_.bouclesRompues = static_cast<std::uint32_t>(RompsBouclesAscendance(b_).size());
        b_.triPersonnesModifie = b_.triDocumentsModifie = b_.triEvenementsModifie = true;
        b_.MarqueModif();
        if (!integre_) {
            b_.ValideBase();
            if (!complet || index_.empty()) return;
            // The keyword lists are built from the committed base.
            const std::string chemin = b_.Chemins().base;
            b_.FermeBase();
            b_.Ouvre(chemin);
            // Rebuilt in one pass over the notes: each rubric of [INDEX]
            // gets an empty list, then one batch fills them all.
            for (char s : index_) {
                const std::uint32_t k = b_.RubriqueDeSymbole(s);
                if (k == 0) continue;
                const std::string r = b_.LitRubrique(k);
                b_.EcritRubrique(k, s, r.substr(1), b_.Ajouter(Pack4(0)));
            }
            b_.DebutLot();
            const std::size_t nb = b_.TablePersonnes().taille();
            for (std::size_t i = 1; i <= nb; ++i) {
                const std::uint32_t n = b_.TriFiche(i);
                b_.AjoutLot(n, b_.NoteAvecMariages(n));
            }
            b_.FinLot();
            b_.ValideBase();
            return;
        }
        // The new persons' keywords go into the existing lists in one batch.
        b_.DebutLot();
        for (std::uint32_t n : integres_)
            b_.AjoutLot(n, b_.NoteAvecMariages(n));
        b_.FinLot();
        if (complet && !nouvelles_.empty() && d_.Demande(kQuestionRefaireMots))
            for (char s : nouvelles_)
                b_.RefaitRubrique(s);
        b_.ValideBase();
    }

    Base& b_;
    svr::Entree& in_;
    const DialogueEchange& d_;
    Reglages* reglages_;
    const bool integre_;
    std::string banniere_;
    bool recente_ = true;
    std::uint32_t H_ = 0, D_ = 0, E_ = 0, M_ = 0;
    bool autresParticules_ = false, autrePrenom_ = false;
    std::array<char, 256> traduction_{};
    std::string nouvelles_; // symbols of the rubrics made here
    std::string index_;     // symbols of [INDEX]
    std::vector<bool> vus_;
    std::vector<std::uint32_t> integres_;
    std::uint64_t enregistrements_ = 0;
    BilanSvr bilan_;
};

} // namespace

bool VersionRecente(const std::string& banniere) {
    // The banner in capitals, less its closing bracket, compared as text:
    // "[SYLVANE VERSION 2001.0" sorts before "[SYLVANE VERSION 97.2", so the
    // files of this version take the way of the old ones too. The earlier
    // program reads its own files so, and an integration must give the same
    // rubrics as it did.
    std::string t = banniere.empty() ? banniere : banniere.substr(0, banniere.size() - 1);
    for (char& c : t)
        c = Majuscule(c);
    return t > "[SYLVANE VERSION 97.2";
}

BilanSvr LitSvrNouvelleBase(Base& b, SystemeFichiers& fs, const std::string& chemin,
                            Reglages& reglages, const DialogueEchange& d) {
    svr::Entree in(fs.ouvrir(chemin, Mode::Lecture));
    // The settings are written in one lot, also when the reading fails.
    reglages.debutLot();
    BilanSvr bilan;
    try {
        bilan = Lecteur(b, in, d, &reglages).Lit();
    } catch (...) {
        reglages.finLot();
        throw;
    }
    reglages.finLot();
    return bilan;
}

BilanSvr IntegreSvr(Base& b, SystemeFichiers& fs, const std::string& chemin,
                    const DialogueEchange& d) {
    svr::Entree in(fs.ouvrir(chemin, Mode::Lecture));
    return Lecteur(b, in, d, nullptr).Lit();
}

} // namespace sylvane
