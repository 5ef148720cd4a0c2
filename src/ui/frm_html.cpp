#include "ui/frm_html.h"

#include "publish/html.h"
#include "text/messages.h"
#include "text/utf8.h"

namespace sylvane {

FrmHTML::FrmHTML(MDIForm1& f) : f_(f) {
    const Parametres& p = f_.app().parametres();
    auteur = p.auteur;
    if (Base* b = f_.base()) dossier = DossierSite(p, b->Chemins().titre);
}

void FrmHTML::Parcourir() {
    if (auto d = f_.services().fichiers.Dossier(msg_html::ChoixDossier, dossier)) dossier = *d;
}

FrmHTML::Resultat FrmHTML::Cree() {
    if (f_.Occupe()) return Resultat::Refuse;
    Base* b = f_.base();
    if (!b || dossier.empty()) return Resultat::Refuse;
    ServicesUi& s = f_.services();
    f_.app().parametres().auteur = auteur;
    bool fini = false;
    try {
        OperationLongue op(s.panneau, s.boites, Message(msg_html::Progres));
        EcrivainHTML w(*b, b->Systeme(), op.interaction());
        w.auteur = auteur;
        if (accueilPersonne) w.personneAccueil = f_.PersonneEnCours();
        fini = w.Site(dossier);
    } catch (const ErreurES& e) {
        s.boites.Texte(Utf8VersAnsi(e.what()));
        return Resultat::Erreur;
    }
    // A stop ends the run with no word: the pages written stay.
    if (!fini) return Resultat::Arrete;
    accueil_ = dossier + (dossier.back() == '/' ? "" : "/") + "homepage.htm";
    s.boites.Information(msg_html::Cree);
    if (ouvrirNavigateur && ouvreNavigateur) ouvreNavigateur(accueil_);
    return Resultat::Cree;
}

} // namespace sylvane
