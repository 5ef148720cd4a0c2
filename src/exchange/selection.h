// Who goes into an export: one mark a person, set by walks over the
// ascendants or the descendants of a person, selections adding up.
//
//   blank  not selected
//   '1'    during a walk: a person of the line, the starting one included
//   '2'    during a walk: a relative reached from the line (a collateral)
//   '3'    during a walk: a spouse of the line; after it: line or spouse
//   '4'    after the walk: a collateral
//
// The export writers ask `Exporte(n)` for a person and `MariageExporte(m)`
// for a marriage.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace sylvane {

class Base;

class Selection {
  public:
    explicit Selection(Base& b);

    // The walks proper (marks '1', '2', '3'); no recursion on the stack,
    // so a line of any length or a loop in a damaged base is safe.
    void MarqueDescendants(std::uint32_t n);
    void MarqueAscendants(std::uint32_t n);

    // A walk from n and the folding of its marks ('1', '3' to '3'; '2',
    // '4' to '4'). Marks of earlier selections stay. Returns the number of
    // marked persons (shown behind message 565).
    std::size_t SelectionneDescendants(std::uint32_t n);
    std::size_t SelectionneAscendants(std::uint32_t n);
    // Every live person of the base, as for a whole export.
    std::size_t SelectionneTout();
    // The two routines of the list: "I" to include, "E" to exclude.
    void Inclut(std::uint32_t n);
    void Exclut(std::uint32_t n);
    // A relative handed over by a search: '4' unless already marked.
    void Apparente(std::uint32_t n);
    void Efface();

    // Options of the export form.
    bool collateraux = false; // ChkCollateraux: collaterals go too
    bool complet = false;     // ChkComplet: all documents and events
    bool sans1900 = false;    // Chk1900: those born after 1900 stay out

    char Marque(std::uint32_t n) const { return n < marques_.size() ? marques_[n] : ' '; }
    // Whether person n goes into the export.
    bool Exporte(std::uint32_t n) const;
    // Whether marriage m goes: a husband, and both spouses exported.
    bool MariageExporte(std::uint32_t m) const;
    // Whether every document and event goes, not only those of the persons.
    bool TousDocuments() const { return complet && !sans1900; }
    std::size_t Compte() const;

  private:
    void Agrandit(std::uint32_t n);
    char& M(std::uint32_t n);
    void Conjoints(std::uint32_t n, char marque, bool seulementSansMarque);
    std::size_t Replie();

    Base& b_;
    std::string marques_; // index: person number
};

} // namespace sylvane
