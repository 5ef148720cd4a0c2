// Verbs over the family links: a parent, a marriage. They write both sides
// through the same routines as the person sheet, with its refusals. The
// sheet's questions are answered No unless --yes is given; warnings go to
// the error output and don't stop the command.
#include "cli/session.h"
#include "cli/verbes.h"
#include "store/liens.h"
#include "text/messages.h"
#include "text/utf8.h"

#include <ostream>

namespace sylvane::cli {
namespace {

// A refusal of the sheet, or a check of the command line: its text.
struct Refus {
    std::string texte; // UTF-8
};

std::string TexteMessage(int n) {
    std::string t = Message(n);
    return t.empty() ? "message " + std::to_string(n) : AnsiVersUtf8(t);
}

DialogueLiens Dialogue(std::ostream& err, bool oui) {
    DialogueLiens d;
    d.boite = [&err, oui](const Boite& b) {
        if (b.genre == Boite::Genre::Avertissement) {
            err << "attention : " << TexteMessage(b.message);
            if (!b.titre.empty()) err << " (" << AnsiVersUtf8(b.titre) << ")";
            err << "\n";
            return Reponse::Oui;
        }
        return oui ? Reponse::Oui : Reponse::Non;
    };
    return d;
}

// The child, the side and the parent of link and unlink.
struct Filiation {
    std::string base;
    std::string enfant, parent;
    Cote cote = Cote::Pere;
};

Filiation LitFiliation(const Options& o, const char* verbe) {
    if (o.positionnels().size() != 1)
        throw ErreurUsage{std::string(verbe) + " attend un seul fichier de base"};
    if (!o.a("child")) throw ErreurUsage{"--child est requis"};
    if (o.a("father") == o.a("mother")) throw ErreurUsage{"--father ou --mother, l'un des deux"};
    Filiation f{o.positionnels()[0], o.valeur("child"), {}, Cote::Pere};
    f.cote = o.a("father") ? Cote::Pere : Cote::Mere;
    f.parent = o.valeur(f.cote == Cote::Pere ? "father" : "mother");
    return f;
}

const char* NomCote(Cote c) { return c == Cote::Pere ? "--father" : "--mother"; }

// Runs a writing verb: a refusal leaves the base as it was and exits 1
// with its text.
template <class F>
int Ecrit(const char* verbe, const std::string& chemin, std::ostream& err, F&& corps) {
    Session s(err);
    Base& b = s.Ouvre(chemin);
    try {
        corps(b);
    } catch (const Refus& r) {
        b.Abandonne();
        err << "sylvane-cli " << verbe << " : " << r.texte << "\n";
        return 1;
    }
    s.Ferme();
    return 0;
}

// `sexe`: what the sex refusal (936) means here.
void Verifie(const ResultatLien& r, const std::string& sexe) {
    if (r.Refuse())
        throw Refus{TexteMessage(r.refus) + (r.refus == 936 ? " (" + sexe + ")" : "")};
}

} // namespace

int VerbeLink(const Arguments& args, std::ostream& out, std::ostream& err) {
    Options o(args, {"child", "father", "mother"}, {"yes"});
    const Filiation f = LitFiliation(o, "link");
    return Ecrit("link", f.base, err, [&](Base& b) {
        const std::uint32_t c = PersonneArgument(b, f.enfant, "--child");
        const std::uint32_t p = PersonneArgument(b, f.parent, NomCote(f.cote));
        if (c == p) throw Refus{"une personne ne peut pas être son propre parent"};
        Liens liens(b, Dialogue(err, o.a("yes")));
        ResultatLien r = liens.AttacheParent(c, f.cote, p);
        Verifie(r, f.cote == Cote::Pere ? "le père doit être un homme"
                                        : "la mère doit être une femme");
        Ligne(out, {{"child", c}, {"father", b.LitPere(c)}, {"mother", b.LitMere(c)},
                    {"marriage", r.mariage}});
    });
}

int VerbeUnlink(const Arguments& args, std::ostream& out, std::ostream& err) {
    Options o(args, {"child", "father", "mother"}, {});
    const Filiation f = LitFiliation(o, "unlink");
    return Ecrit("unlink", f.base, err, [&](Base& b) {
        const std::uint32_t c = PersonneArgument(b, f.enfant, "--child");
        const std::uint32_t p = PersonneArgument(b, f.parent, NomCote(f.cote));
        const std::uint32_t present = f.cote == Cote::Pere ? b.LitPere(c) : b.LitMere(c);
        if (present != p)
            throw Refus{"la personne n° " + std::to_string(p) + " n'est pas " +
                        (f.cote == Cote::Pere ? "le père" : "la mère") + " de la personne n° " +
                        std::to_string(c)};
        // The command is the confirmation (617).
        DialogueLiens d = Dialogue(err, true);
        Liens(b, d).CoupeParent(c, f.cote);
        Ligne(out, {{"child", c}, {"father", b.LitPere(c)}, {"mother", b.LitMere(c)}});
    });
}

int VerbeMarry(const Arguments& args, std::ostream& out, std::ostream& err) {
    Options o(args, {"year"}, {"yes"});
    if (o.positionnels().size() != 3)
        throw ErreurUsage{"marry attend un fichier de base, le mari et la femme"};
    const std::string an = Ansi(o.valeur("year"));
    if (an.size() > 4 || an.find_first_of("#\r\n") != std::string::npos)
        throw ErreurUsage{"--year : une année de 4 caractères au plus"};
    return Ecrit("marry", o.positionnels()[0], err, [&](Base& b) {
        const std::uint32_t mari = PersonneArgument(b, o.positionnels()[1], "HUSBAND");
        const std::uint32_t femme = PersonneArgument(b, o.positionnels()[2], "WIFE");
        if (mari == femme) throw Refus{"une personne ne peut pas s'épouser elle-même"};
        if (b.LitSexe(mari) != "H")
            throw Refus{TexteMessage(936) + " (le mari doit être un homme)"};
        Liens liens(b, Dialogue(err, o.a("yes")));
        ResultatLien r = liens.AttacheConjoint(mari, femme, true);
        Verifie(r, "la femme doit être une femme");
        if (!an.empty()) b.EcritAnMariage(r.mariage, an);
        out << r.mariage << "\n";
    });
}

} // namespace sylvane::cli
