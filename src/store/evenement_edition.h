// The writes of the event editor over the event store: a new event with its
// text, note and place in the date table; a changed event; the roles of the
// persons, always written on both sides (the person first); the events the
// program makes by itself from a sheet, and the sheet brought in line with
// an event's date and place.
#pragma once

#include "store/base.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace sylvane {

// --- Dates ------------------------------------------------------------------------------------

// The date typed on the event form: empty gives 0 (no date); otherwise the
// local form ("12/3/1850", "12 mars 1850"), then the tag form
// ("12 MAR 1850"). Nothing when neither gives a date that exists.
std::optional<long> LitDateEvenement(std::string_view texte);
// "12 mars 1850" of a day number in the user's words; "" for 0.
std::string TexteDateEvenement(long serie);
// "12/03/1850"; "" for 0.
std::string DateCourteEvenement(long serie);
// The year of a day number; 0 for no date.
int AnneeEvenement(long serie);
// The day of the week in words (messages 604, 598 to 603); "" for 0.
std::string JourSemaineEvenement(long serie);

// --- Kinds and roles ----------------------------------------------------------------------------

// One cell of a row of the table of event kinds.
struct CelluleRole {
    bool principal = false;
    char sexe = ' '; // 'H', 'F' or ' ' for any
    std::string tag;
};
std::vector<CelluleRole> CellulesRoles(const TableTemoins& t, std::string_view type);
// Whether a person of this stored sex may hold a role of this sex.
bool SexeConvient(char sexeRole, std::string_view sexePersonne);
// The sex a role tag asks for in an event of this type (' ' for any, or
// when the type does not list the role).
char SexeDuRole(const TableTemoins& t, std::string_view type, std::string_view role);
// The role a person holds in an event, from the person's side ("" when
// the person's list does not hold the event), and its rank in that list.
std::string RoleDansEvenement(Base& b, std::uint32_t p, std::uint32_t e, int* rang = nullptr);
// The event's persons, the first 200 of its list.
std::vector<std::uint32_t> PersonnesEvenement(Base& b, std::uint32_t e);

// --- Writes -------------------------------------------------------------------------------------

struct ChampsEvenement {
    long date = 0;
    std::string lieu, titre, tag;
    std::string note;
};

// A new event: its note, its text (place, title, tag), its head, its place
// in the date table by bisection; the counts and marks follow. No roles.
std::uint32_t CreeEvenement(Base& b, const ChampsEvenement& c);
// An existing event takes the fields that differ: the note, the text, and
// the date (the event then moves in the date table and each of its persons'
// lists is sorted again). Returns whether anything was written.
bool MajEvenement(Base& b, std::uint32_t e, const ChampsEvenement& c);
// Deletes an event: its persons lose it, its number stays empty, the date
// table loses its row.
void SupprimeEvenement(Base& b, std::uint32_t e);

// A person takes a role in the event ("A" on both sides, the person first).
void AjouteRole(Base& b, std::uint32_t e, std::uint32_t p, std::string_view role);
// The person leaves the event ("S" on both sides).
void RetireRole(Base& b, std::uint32_t e, std::uint32_t p);
// The person's role changes ("M" on the person's side).
void ChangeRole(Base& b, std::uint32_t e, std::uint32_t p, std::string_view role);
// Swaps the persons at places i and i + 1 (from 1) of the event's list.
bool EchangePersonnes(Base& b, std::uint32_t e, int i);
// The same for the documents of the event.
bool EchangeDocuments(Base& b, std::uint32_t e, int i);

// The roles given at creation to the owner of an event: the first main role
// of the type that fits the owner's sex; with "CHIL" the owner's father and
// mother take "FATH" and "MOTH"; with "DEAD" the spouses that outlive the
// owner take "WIDW" or "WIDR", and when `enfants` the owner's children take
// "SON" or "DAUG" if the type has those roles. Returns the owner's role, ""
// when none fits.
std::string RolesCreation(Base& b, std::uint32_t e, std::uint32_t proprietaire, bool enfants);

// `Creer_Evenement`: an event made by the program for a person, titled
// with the person's name, with the roles of creation.
std::uint32_t Creer_Evenement(Base& b, std::uint32_t personne, std::string_view tag, long date,
                              std::string_view lieu);
// The event of this type in which the person holds a main role (the first
// of its list), 0 when none.
std::uint32_t EvenementPrincipal(Base& b, std::uint32_t personne, std::string_view tag);
// The same for a marriage: an event of the type whose husband or wife (as
// the person's sex fits) is the person and whose other spouse is the
// marriage's.
std::uint32_t EvenementMariage(Base& b, std::uint32_t personne, std::uint32_t mariage,
                               std::string_view tag);

// --- The sheet and the event --------------------------------------------------------------------

// The birth (or death) year, day and place of a person become those of a
// date and a place (a place left empty stays as it was).
void EcritNaissanceDeces(Base& b, std::uint32_t n, bool naissance, long date,
                         const std::string& lieu);
// Whether the event's date or place differs from what the owner's sheet
// holds for it ("BIRT", "DEAT", "MARR" with the owner in the main role).
bool DiffereDeFiche(Base& b, std::uint32_t e, std::uint32_t proprietaire);
// The owner's sheet takes the event's year, day and place: birth or death
// fields, or the marriage with the other spouse; the sort table, the
// parents' child lists and the keyword index follow.
void MetFicheAJour(Base& b, std::uint32_t e, std::uint32_t proprietaire);

} // namespace sylvane
