// The general list of names (`FrmNom`): the person sort table seen as rows,
// one person a row, in the order of the table. Nothing is read ahead: a row
// reads its person when it is asked for, so that the list opens at once
// whatever the size of the base. Typing the start of a name (or, when the
// base is sorted by year, of a year) moves the list there by bisection over
// the sort keys; a base in creation order, or a name typed in a base sorted
// by year, is searched row by row from the current one.
//
// Rows are counted from 0; the sort table's places from 1 (row r is place
// r + 1).
#pragma once

#include <cstdint>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace sylvane {

class Base;

// What a row shows (Windows-1252 texts).
struct LigneNom {
    std::uint32_t numero = 0;
    std::string nom;     // NomComplet
    std::string famille; // "xx" no parent, "xo" no father, "ox" no mother, "" both
    std::string dates;   // the dates as NomDates writes them: "(1850-1910)"
    std::string sexe;    // "H", "F", "I" or ""
    std::string marque;  // "*" for a person with no marriage or no child
    // The name with its dates, as NomDates gives it.
    std::string Texte() const;
};

class ListeNoms {
  public:
    // `base` may be null or empty: the list then has no row.
    explicit ListeNoms(Base* base);

    std::size_t Nombre() const;
    // The highest person number of the base (the width of the numbers).
    std::uint32_t PlusGrandNumero() const;
    // The person of a row, 0 outside the list.
    std::uint32_t Personne(std::size_t ligne) const;
    // The row of a person, nothing when the sort table doesn't hold it.
    std::optional<std::size_t> LigneDe(std::uint32_t personne);
    LigneNom Ligne(std::size_t ligne);

    // The selected row (0 in an empty list) and the person it holds.
    std::size_t Courante() const { return courante_; }
    void Place(std::size_t ligne);
    std::uint32_t Choix() const { return Personne(courante_); }
    // Positions the list on a person, or on the first row when the person
    // isn't in the table.
    void Depart(std::uint32_t personne);

    // `TxPosition`: moves to the first row whose key starts with the typed
    // text (by bisection in a sorted base; else the next such row from the
    // current one). When no key starts with it, a sorted base goes to the
    // place where the text would stand and the others stay. Answers whether
    // a matching row was found. An empty text changes nothing.
    bool Cherche(std::string_view texte);
    // `C_Préc`: the previous row matching the text before the current row;
    // and its twin, the next one after it. False, and no move, when none.
    bool Precedente(std::string_view texte);
    bool Suivante(std::string_view texte);

    // The same searches a slice at a time, so that a window stays live
    // while a million rows are walked: at most `limite` rows are read by a
    // call; `EnCours` asks for `Poursuit` until the answer comes. A new
    // search drops the one under way.
    enum class Sens { Premiere, Precedente, Suivante };
    enum class Resultat { Trouve, Absent, EnCours };
    Resultat Lance(Sens sens, std::string_view texte, std::size_t limite);
    Resultat Poursuit(std::size_t limite);

  private:
    // The prefixes that the typed text may stand for, and whether they are
    // compared with whole sort keys (then in order) or with the name part.
    struct Motif {
        std::vector<std::string> prefixes;
        bool cleEntiere = false;
    };
    Motif Prepare(std::string_view texte) const;
    std::vector<std::string> VariantesNom(std::string_view texte) const;
    bool Trie(const Motif& m) const;
    bool Correspond(std::size_t ligne, const Motif& m);
    // First row whose key is not below `cle`, and first row past those that
    // start with `cle`.
    std::size_t BorneInferieure(std::string_view cle);
    std::size_t FinPrefixe(std::string_view cle, std::size_t depuis);
    std::string_view Cle(std::size_t ligne);

    Resultat Parcourt(std::size_t limite);

    Base* base_;
    char mode_ = '0';
    std::size_t courante_ = 0;
    // The walk under way: its pattern, the next row, the rows left, the
    // direction, and whether it goes round the end.
    struct Parcours {
        Motif motif;
        std::size_t prochaine = 0, restant = 0;
        bool arriere = false, boucle = false;
    } parcours_;
};

} // namespace sylvane
