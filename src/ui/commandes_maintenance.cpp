// The maintenance commands of the main window: reorganisation, the
// consistency control and its report, the repairs of names and notes. Each
// runs on the progress panel and refuses while another operation runs.
#include "kinship/numeros.h"
#include "maintenance/controle.h"
#include "maintenance/reorganisation.h"
#include "maintenance/reparations.h"
#include "text/messages.h"
#include "ui/commandes_communes.h"
#include "ui/frm_controle.h"
#include "ui/mdiform1.h"

namespace sylvane {
namespace {

constexpr int kCopieAvant = 842;
constexpr int kFermezFenetres = 544;
constexpr int kTitreReorganisation = 545;
constexpr int kTitreControle = 843;
constexpr int kTitreMajuscules = 546;
constexpr int kTitrePrenoms = 548;
constexpr int kMotsReecrits = 920;
constexpr int kPatientez = 505;

// The guards every command here shares: a base, no running operation.
bool Possible(MDIForm1& f) { return !f.Occupe() && f.base(); }

} // namespace

bool CmdReorganiser(MDIForm1& f) {
    if (!Possible(f)) return false;
    ServicesUi& s = f.services();
    // Only the family view may stay open: every other window holds numbers.
    const int autres = s.fenetres.NombreOuvertes() - (s.fenetres.EstOuverte("FrmDebut") ? 1 : 0);
    if (autres > 0) {
        s.boites.Information(kFermezFenetres);
        return false;
    }
    f.Confirme_Fiche_En_Cours();
    const Reponse copie = s.boites.Question(kCopieAvant, true);
    if (copie == Reponse::Annuler) return false;
    Base& b = *f.base();
    Application& app = f.app();
    ResultatReorganisation r;
    bool sansErreur;
    {
        OperationLongue op(s.panneau, s.boites, Message(kTitreReorganisation),
                           Message(kPatientez));
        sansErreur = Protege(s.boites, [&] {
            r = Reorganiser(b, InteractionRepondue(op, kCopieAvant, copie));
        });
    }
    if (sansErreur && r.fait) {
        // The numbers changed: the current person and the two De Cujus follow.
        EtatNumerotation& num = app.numeros();
        num.deCujus1.deCujus = r.numeros.Personne(num.deCujus1.deCujus);
        num.deCujus2.deCujus = r.numeros.Personne(num.deCujus2.deCujus);
        Calcul_Numeros_1(b, num);
        Calcul_Numeros_2(b, num);
        f.Aller(r.numeros.Personne(f.PersonneEnCours()));
    } else {
        f.Aller(f.PersonneEnCours());
    }
    return sansErreur && r.fait;
}

bool CmdControle(MDIForm1& f) {
    if (!Possible(f)) return false;
    ServicesUi& s = f.services();
    f.Confirme_Fiche_En_Cours();
    const Reponse copie = s.boites.Question(kCopieAvant, true);
    if (copie == Reponse::Annuler) return false;
    ResultatControle r;
    bool sansErreur;
    {
        OperationLongue op(s.panneau, s.boites, Message(kTitreControle), Message(kPatientez));
        sansErreur = Protege(s.boites, [&] {
            r = Controler(*f.base(), InteractionRepondue(op, kCopieAvant, copie));
        });
    }
    f.Aller(f.PersonneEnCours());
    if (!sansErreur || !r.fait) return false;
    FrmControle::Publie(r);
    s.fenetres.Ouvre("FrmControle");
    return true;
}

bool CmdRePMinMaj(MDIForm1& f) {
    if (!Possible(f)) return false;
    ServicesUi& s = f.services();
    f.Confirme_Fiche_En_Cours();
    bool fait;
    {
        OperationLongue op(s.panneau, s.boites, Message(kTitreMajuscules), Message(kPatientez));
        fait = Protege(s.boites, [&] { MnuRePMinMaj(*f.base(), op.interaction()); });
    }
    f.Aller(f.PersonneEnCours());
    return fait;
}

bool CmdRepPrenom(MDIForm1& f) {
    if (!Possible(f)) return false;
    ServicesUi& s = f.services();
    f.Confirme_Fiche_En_Cours();
    long n = -1;
    {
        OperationLongue op(s.panneau, s.boites, Message(kTitrePrenoms), Message(kPatientez));
        // Message 920 is an OK/Cancel box: Yes goes on, anything else stops.
        Interaction io = op.interaction();
        io.question = [&s](int m) {
            return m == kMotsReecrits && s.boites.Question(m) == Reponse::Oui ? Reponse::Oui
                                                                             : Reponse::Annuler;
        };
        Protege(s.boites, [&] { n = MnuRepPrenom(*f.base(), io); });
    }
    f.Aller(f.PersonneEnCours());
    return n >= 0;
}

} // namespace sylvane
