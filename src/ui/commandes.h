// The commands of the main window: its menus, in their order, with the
// message of each caption, its key, the form it opens and whether it needs
// an open base. The Qt layer builds the menu bar from this table; the logic
// of the main window dispatches on the same identifiers.
#pragma once

#include <string>
#include <vector>

namespace sylvane {

enum class Commande {
    Aucune,
    // Menus and sub-menus.
    MnuFichier, MnuEditer, MnuRech, MnuUtilitaires, MnuAffichage, MnuFenetre,
    MnuLangue, MnuHisto, MnuReleve, MnuDeCujus, MnuInternet, MnuDepannage, MnuNiveau,
    // File.
    MnuNouveau, MnuOuvrir, MnuEnregistrer, MnuFermer, MnuSauvegarde, MnuRestauration,
    MnuImporter, MnuExporterSelectif, MnuGeneanet, MnuIntegrerSylvane, MnuReleveMariage,
    MnuBapteme, MnuSepulture, MnuReleveAscendance, MnuImprimer, MnuImprimante, MnuQuitter,
    // Edit.
    MnuModif, MnuNouvInd, CmdFusionFiches, MnuDescription, MnuPrecedent, MnuSuivant,
    MnuListe, MnuAller1_1, MnuAller1_2, MnuDeCujus1, MnuDeCujus2, MnuEvenements, MnuImage,
    MnuArbAsc, MnuArbDesc,
    // Search.
    MnuRecherche, MnuRechTexte, MnuRechCouple, MnuRechEvt, MnuAscendants, MnuDescendant,
    MnuParente,
    // Utilities.
    MnuGraphisme, MnuWeb, MnuHTML, MnuReorganiser, MnuControle, MnuRePMinMaj, MnuRepPrenom,
    MnuSylvane97, MnuDoublonMariage, CmdRemplacement,
    // Display.
    MnuParametres, MnuMotCle, MnuCommune, MnuCalendrier, MnuStatistiques, MnuAnniv,
    MnuRecapAnniv, MnuImpAnniv, MnuRTFAnniv, MnuHTMLAnniv, MnuUsuels, MnuAfffic,
    // Window.
    MnuGauche, MnuDroite, MnuAgrandir, MnuDiminuer, MnuArranger, MnuNiveau1, MnuNiveau2,
    MnuNiveau3, MnuNiveau4,
};

struct EntreeMenu {
    Commande commande;
    const char* nom;          // the entry's name in the program ("MnuOuvrir")
    Commande parent;          // Aucune for a menu of the bar
    int libelle;              // message of the caption
    const char* raccourci;    // key sequence in the portable form ("Ctrl+O"), or ""
    const char* formulaire;   // the form it opens, or "" when it is a command
    bool besoinBase;          // disabled while no base is open
    bool separateurAvant;     // a separator stands before it in its menu
};

// Every entry, each menu before its entries, in menu order.
const std::vector<EntreeMenu>& Menus();
const EntreeMenu& EntreeDe(Commande c);
// By name ("MnuOuvrir"); nullptr when unknown.
const EntreeMenu* EntreeNommee(const std::string& nom);

// One button of the tool bar.
struct BoutonOutil {
    int outil = 0;            // 1 to 35, the image; 0 for a separator
    std::string cle;          // "Ouvrir", ...
    int infobulle = 0;        // message of the tool tip
    Commande commande = Commande::Aucune;
    bool deroulant = false;   // the history button
};

// The tool bar from the "Icones" setting: the history button first, then
// each number of the list (99 a separator, 7 nothing, below 7 the tool of
// that number plus 2, above 7 the tool of that number; unknown numbers are
// passed over).
std::vector<BoutonOutil> BarreOutils(const std::vector<int>& icones);
// The 35 tools by number (1 to 35).
const BoutonOutil& Outil(int numero);

} // namespace sylvane
