#include "ui/liste_noms.h"

#include "store/base.h"
#include "text/mots.h"

#include <algorithm>

namespace sylvane {
namespace {

std::vector<std::string> Mots(std::string_view texte) {
    std::vector<std::string> mots;
    std::size_t i = 0;
    while (i < texte.size()) {
        while (i < texte.size() && texte[i] == ' ') ++i;
        std::size_t j = i;
        while (j < texte.size() && texte[j] != ' ') ++j;
        if (j > i) mots.emplace_back(texte.substr(i, j - i));
        i = j;
    }
    return mots;
}

std::string Joint(const std::vector<std::string>& mots, std::size_t debut, std::size_t fin) {
    std::string r;
    for (std::size_t k = debut; k < fin; ++k) {
        if (!r.empty()) r += ' ';
        r += mots[k];
    }
    return r;
}

void AjouteUnique(std::vector<std::string>& v, std::string s) {
    if (std::find(v.begin(), v.end(), s) == v.end()) v.push_back(std::move(s));
}

} // namespace

std::string LigneNom::Texte() const {
    if (dates.empty()) return nom;
    return nom + " " + dates;
}

ListeNoms::ListeNoms(Base* base) : base_(base && base->EstOuverte() ? base : nullptr) {
    if (base_) mode_ = base_->Tete().modeTri;
}

std::size_t ListeNoms::Nombre() const {
    return base_ ? base_->TablePersonnes().taille() : 0;
}

std::uint32_t ListeNoms::PlusGrandNumero() const {
    return base_ ? base_->Tete().maxPersonne : 0;
}

std::uint32_t ListeNoms::Personne(std::size_t ligne) const {
    return ligne < Nombre() ? base_->TriFiche(ligne + 1) : 0;
}

std::optional<std::size_t> ListeNoms::LigneDe(std::uint32_t personne) {
    if (!base_ || personne == 0 || personne > base_->Tete().maxPersonne) return std::nullopt;
    const std::uint32_t place = base_->TrouvePlaceFiche(personne);
    if (place == 0) return std::nullopt;
    return place - 1;
}

LigneNom ListeNoms::Ligne(std::size_t ligne) {
    LigneNom l;
    l.numero = Personne(ligne);
    if (l.numero == 0) return l;
    Base& b = *base_;
    const std::uint32_t n = l.numero;
    l.nom = b.NomComplet(n);
    const std::string avecDates = b.NomDates(n);
    if (avecDates.size() > l.nom.size()) l.dates = Trim(avecDates.substr(l.nom.size()));
    const bool pere = b.LitPere(n) != 0, mere = b.LitMere(n) != 0;
    if (!pere || !mere) l.famille = std::string(pere ? "o" : "x") + (mere ? "o" : "x");
    l.sexe = Trim(b.LitSexe(n));
    if (b.MariageNo(n, 1) == 0 || b.EnfantNo(n, 1) == 0) l.marque = "*";
    return l;
}

void ListeNoms::Place(std::size_t ligne) {
    const std::size_t nb = Nombre();
    courante_ = nb == 0 ? 0 : std::min(ligne, nb - 1);
}

void ListeNoms::Depart(std::uint32_t personne) {
    Place(LigneDe(personne).value_or(0));
}

// --- Search ------------------------------------------------------------------

std::vector<std::string> ListeNoms::VariantesNom(std::string_view texte) const {
    // The blank that parts the family name from the first names can be any
    // of the typed ones (a family name may hold blanks): each cut gives a
    // prefix, the longest family name first. The family part is folded as
    // the sort key folds it: particles set aside (when the base does so),
    // blanks, hyphens and apostrophes as dots, capitals without accents.
    const std::vector<std::string> mots = Mots(texte);
    const bool blancFinal = !texte.empty() && texte.back() == ' ';
    std::vector<std::string> r;
    for (std::size_t k = mots.size(); k >= 1; --k) {
        const std::string famille = Joint(mots, 0, k);
        std::string actif = base_->SansParticule(famille);
        const std::string brut = SansParticule(famille, {}, false);
        const bool complet = k < mots.size() || blancFinal;
        if (actif != brut && !complet) {
            // The particles go behind the name, in brackets, before the
            // first names: a family name still being typed is the start of
            // the name before them.
            const std::size_t p = actif.rfind('(');
            actif.resize(p == std::string::npos ? actif.size() : p);
            if (!actif.empty() && actif.back() == '.') actif.pop_back();
        }
        const std::string suite = complet ? " " + CleMot(Joint(mots, k, mots.size())) : "";
        if (!actif.empty() && actif.front() != '(') AjouteUnique(r, CleMot(actif) + suite);
        if (actif != brut) AjouteUnique(r, CleMot(brut) + suite);
    }
    return r;
}

ListeNoms::Motif ListeNoms::Prepare(std::string_view texte) const {
    Motif m;
    const std::size_t debut = texte.find_first_not_of(' ');
    if (!base_ || debut == std::string_view::npos) return m;
    texte.remove_prefix(debut);
    const bool annee = (texte[0] >= '0' && texte[0] <= '9') || texte[0] == '-';
    if (mode_ == '1' && annee) {
        // Sorted by year: the year typed, then perhaps a name.
        m.cleEntiere = true;
        const std::size_t fin = std::min(texte.find(' '), texte.size());
        const std::string an(texte.substr(0, fin));
        const std::string_view reste = texte.substr(fin);
        if (reste.find_first_not_of(' ') == std::string_view::npos) {
            m.prefixes.push_back(reste.empty() ? an : an + " ");
        } else {
            for (auto& v : VariantesNom(reste.substr(reste.find_first_not_of(' '))))
                m.prefixes.push_back(an + " " + v);
        }
        return m;
    }
    m.cleEntiere = mode_ != '1';
    m.prefixes = VariantesNom(texte);
    return m;
}

bool ListeNoms::Trie(const Motif& m) const {
    return m.cleEntiere && (mode_ == '1' || mode_ == '2');
}

std::string_view ListeNoms::Cle(std::size_t ligne) {
    return base_->CleVue(Personne(ligne));
}

bool ListeNoms::Correspond(std::size_t ligne, const Motif& m) {
    std::string_view cle = Cle(ligne);
    // In a base sorted by year the name follows the four characters of the
    // year and a blank.
    if (!m.cleEntiere && mode_ == '1') cle = cle.size() >= 5 ? cle.substr(5) : std::string_view();
    for (const auto& p : m.prefixes)
        if (cle.starts_with(p)) return true;
    return false;
}

std::size_t ListeNoms::BorneInferieure(std::string_view cle) {
    std::size_t bas = 0, haut = Nombre();
    while (bas < haut) {
        const std::size_t milieu = bas + (haut - bas) / 2;
        if (Cle(milieu) < cle) bas = milieu + 1;
        else haut = milieu;
    }
    return bas;
}

std::size_t ListeNoms::FinPrefixe(std::string_view cle, std::size_t depuis) {
    // From a first key at or after `cle`, the keys that start with it come
    // first, then the greater ones.
    std::size_t bas = depuis, haut = Nombre();
    while (bas < haut) {
        const std::size_t milieu = bas + (haut - bas) / 2;
        if (Cle(milieu).starts_with(cle)) bas = milieu + 1;
        else haut = milieu;
    }
    return bas;
}

bool ListeNoms::Cherche(std::string_view texte) {
    return Lance(Sens::Premiere, texte, SIZE_MAX) == Resultat::Trouve;
}

bool ListeNoms::Precedente(std::string_view texte) {
    return Lance(Sens::Precedente, texte, SIZE_MAX) == Resultat::Trouve;
}

bool ListeNoms::Suivante(std::string_view texte) {
    return Lance(Sens::Suivante, texte, SIZE_MAX) == Resultat::Trouve;
}

ListeNoms::Resultat ListeNoms::Lance(Sens sens, std::string_view texte, std::size_t limite) {
    parcours_ = {};
    Motif m = Prepare(texte);
    const std::size_t nb = Nombre();
    if (m.prefixes.empty() || nb == 0) return Resultat::Absent;
    if (Trie(m)) {
        // The keys that start with a prefix stand together: bisection.
        std::optional<std::size_t> meilleure;
        for (const auto& p : m.prefixes) {
            const std::size_t debut = BorneInferieure(p);
            if (sens == Sens::Premiere) {
                if (debut < nb && Cle(debut).starts_with(p)) {
                    meilleure = debut;
                    break;
                }
                continue;
            }
            const std::size_t fin = FinPrefixe(p, debut);
            if (sens == Sens::Precedente && debut < fin && debut < courante_) {
                const std::size_t i = std::min(courante_ - 1, fin - 1);
                if (!meilleure || i > *meilleure) meilleure = i;
            } else if (sens == Sens::Suivante) {
                const std::size_t i = std::max(courante_ + 1, debut);
                if (i < fin && (!meilleure || i < *meilleure)) meilleure = i;
            }
        }
        if (meilleure) Place(*meilleure);
        // No match: the first search goes where the text would stand.
        else if (sens == Sens::Premiere) Place(BorneInferieure(m.prefixes.front()));
        return meilleure ? Resultat::Trouve : Resultat::Absent;
    }
    parcours_.motif = std::move(m);
    switch (sens) {
    case Sens::Premiere:
        parcours_.prochaine = courante_;
        parcours_.restant = nb;
        parcours_.boucle = true;
        break;
    case Sens::Suivante:
        parcours_.prochaine = courante_ + 1;
        parcours_.restant = nb - courante_ - 1;
        break;
    case Sens::Precedente:
        parcours_.prochaine = courante_ - 1;
        parcours_.restant = courante_;
        parcours_.arriere = true;
        break;
    }
    return Parcourt(limite);
}

ListeNoms::Resultat ListeNoms::Poursuit(std::size_t limite) {
    if (parcours_.restant == 0) return Resultat::Absent;
    return Parcourt(limite);
}

ListeNoms::Resultat ListeNoms::Parcourt(std::size_t limite) {
    Parcours& p = parcours_;
    const std::size_t nb = Nombre();
    for (std::size_t lus = 0; p.restant > 0 && lus < limite; ++lus) {
        const std::size_t i = p.prochaine;
        --p.restant;
        if (p.arriere) --p.prochaine;
        else if (++p.prochaine == nb && p.boucle) p.prochaine = 0;
        if (i < nb && Correspond(i, p.motif)) {
            p.restant = 0;
            Place(i);
            return Resultat::Trouve;
        }
    }
    return p.restant > 0 ? Resultat::EnCours : Resultat::Absent;
}

} // namespace sylvane
