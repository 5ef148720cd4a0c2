#include "ui/commandes.h"

#include <array>
#include <stdexcept>
#include <unordered_map>

namespace sylvane {

using C = Commande;

const std::vector<EntreeMenu>& Menus() {
    static const std::vector<EntreeMenu> menus = {
        {C::MnuFichier, "MnuFichier", C::Aucune, 3001, "", "", false, false},
        {C::MnuNouveau, "MnuNouveau", C::MnuFichier, 3010, "Ctrl+N", "", false, false},
        {C::MnuOuvrir, "MnuOuvrir", C::MnuFichier, 3011, "Ctrl+O", "", false, false},
        {C::MnuEnregistrer, "MnuEnregistrer", C::MnuFichier, 3012, "Ctrl+S", "", true, false},
        {C::MnuFermer, "MnuFermer", C::MnuFichier, 3013, "Ctrl+W", "", true, false},
        {C::MnuHisto, "MnuHisto", C::MnuFichier, 3014, "", "", false, false},
        {C::MnuLangue, "MnuLangue", C::MnuFichier, 3015, "", "", false, true},
        {C::MnuSauvegarde, "MnuSauvegarde", C::MnuFichier, 3016, "", "", true, true},
        {C::MnuRestauration, "MnuRestauration", C::MnuFichier, 3017, "", "", false, false},
        {C::MnuImporter, "MnuImporter", C::MnuFichier, 3018, "Ctrl+I", "", false, true},
        {C::MnuExporterSelectif, "MnuExporterSelectif", C::MnuFichier, 3019, "Ctrl+E", "FrmExporter", true, false},
        {C::MnuGeneanet, "MnuGeneanet", C::MnuFichier, 3020, "", "", true, false},
        {C::MnuIntegrerSylvane, "MnuIntegrerSylvane", C::MnuFichier, 3021, "", "", true, false},
        {C::MnuReleve, "MnuReleve", C::MnuFichier, 3022, "", "", false, false},
        {C::MnuReleveMariage, "MnuReleveMariage", C::MnuReleve, 3023, "", "FrmReleveMariage", false, false},
        {C::MnuBapteme, "MnuBapteme", C::MnuReleve, 3024, "", "FrmReleveBapteme", false, false},
        {C::MnuSepulture, "MnuSepulture", C::MnuReleve, 3025, "", "FrmReleveSepulture", false, false},
        {C::MnuReleveAscendance, "MnuReleveAscendance", C::MnuReleve, 3026, "", "FrmReleveAscendance", false, false},
        {C::MnuImprimer, "MnuImprimer", C::MnuFichier, 3027, "Ctrl+P", "FrmImpression", true, true},
        {C::MnuImprimante, "MnuImprimante", C::MnuFichier, 3028, "", "FrmPrinter", false, false},
        {C::MnuQuitter, "MnuQuitter", C::MnuFichier, 3029, "Ctrl+Q", "", false, true},
        {C::MnuEditer, "MnuEditer", C::Aucune, 3002, "", "", false, false},
        {C::MnuModif, "MnuModif", C::MnuEditer, 3030, "F2", "FrmMisajour", true, false},
        {C::MnuNouvInd, "MnuNouvInd", C::MnuEditer, 3031, "Ctrl+Shift+N", "FrmMisajour", true, false},
        {C::CmdFusionFiches, "CmdFusionFiches", C::MnuEditer, 3032, "", "FrmFusion", true, false},
        {C::MnuDescription, "MnuDescription", C::MnuEditer, 3033, "", "FrmDesImage", true, false},
        {C::MnuPrecedent, "MnuPrecedent", C::MnuEditer, 3034, "Ctrl+PgUp", "", true, true},
        {C::MnuSuivant, "MnuSuivant", C::MnuEditer, 3035, "Ctrl+PgDown", "", true, false},
        {C::MnuListe, "MnuListe", C::MnuEditer, 3036, "Ctrl+L", "", true, false},
        {C::MnuAller1_1, "MnuAller1_1", C::MnuEditer, 3037, "Ctrl+1", "", true, false},
        {C::MnuAller1_2, "MnuAller1_2", C::MnuEditer, 3038, "Ctrl+2", "", true, false},
        {C::MnuDeCujus, "MnuDeCujus", C::MnuEditer, 3039, "", "", true, false},
        {C::MnuDeCujus1, "MnuDeCujus1", C::MnuDeCujus, 3040, "", "", true, false},
        {C::MnuDeCujus2, "MnuDeCujus2", C::MnuDeCujus, 3041, "", "", true, false},
        {C::MnuEvenements, "MnuEvenements", C::MnuEditer, 3042, "", "FrmLstEvt", true, true},
        {C::MnuImage, "MnuImage", C::MnuEditer, 3043, "", "FrmLstImage", true, false},
        {C::MnuArbAsc, "MnuArbAsc", C::MnuEditer, 3044, "", "FrmBrancheAsc", true, true},
        {C::MnuArbDesc, "MnuArbDesc", C::MnuEditer, 3045, "", "FrmBrancheDesc", true, false},
        {C::MnuRech, "MnuRech", C::Aucune, 3003, "", "", false, false},
        {C::MnuRecherche, "MnuRecherche", C::MnuRech, 3050, "Ctrl+F", "FrmRecherche", true, false},
        {C::MnuRechTexte, "MnuRechTexte", C::MnuRech, 3051, "", "FrmRechTexte", true, false},
        {C::MnuRechCouple, "MnuRechCouple", C::MnuRech, 3052, "", "FrmRechCouple", true, false},
        {C::MnuRechEvt, "MnuRechEvt", C::MnuRech, 3053, "", "FrmRechEvt", true, false},
        {C::MnuAscendants, "MnuAscendants", C::MnuRech, 3054, "", "FrmAscendants", true, true},
        {C::MnuDescendant, "MnuDescendant", C::MnuRech, 3055, "", "FrmDescendants", true, false},
        {C::MnuParente, "MnuParente", C::MnuRech, 3056, "", "FrmRechAscendant", true, false},
        {C::MnuUtilitaires, "MnuUtilitaires", C::Aucune, 3004, "", "", false, false},
        {C::MnuGraphisme, "MnuGraphisme", C::MnuUtilitaires, 3060, "", "FrmGraphisme", true, false},
        {C::MnuInternet, "MnuInternet", C::MnuUtilitaires, 3061, "", "", true, false},
        {C::MnuWeb, "MnuWeb", C::MnuInternet, 3062, "", "FrmWeb", true, false},
        {C::MnuHTML, "MnuHTML", C::MnuInternet, 3063, "", "FrmHTML", true, false},
        {C::MnuReorganiser, "MnuReorganiser", C::MnuUtilitaires, 3064, "", "", true, true},
        {C::MnuControle, "MnuControle", C::MnuUtilitaires, 3065, "", "", true, false},
        {C::MnuDepannage, "MnuDepannage", C::MnuUtilitaires, 3066, "", "", true, false},
        {C::MnuRePMinMaj, "MnuRePMinMaj", C::MnuDepannage, 3067, "", "", true, false},
        {C::MnuRepPrenom, "MnuRepPrenom", C::MnuDepannage, 3068, "", "", true, false},
        {C::MnuSylvane97, "MnuSylvane97", C::MnuDepannage, 3069, "", "", true, false},
        {C::MnuDoublonMariage, "MnuDoublonMariage", C::MnuDepannage, 3070, "", "FrmFusionMariages", true, false},
        {C::CmdRemplacement, "CmdRemplacement", C::MnuDepannage, 3071, "", "FrmRemplacement", true, false},
        {C::MnuAffichage, "MnuAffichage", C::Aucune, 3005, "", "", false, false},
        {C::MnuParametres, "MnuParametres", C::MnuAffichage, 3080, "", "FrmParametre", false, false},
        {C::MnuMotCle, "MnuMotCle", C::MnuAffichage, 3081, "", "FrmMotCle", true, false},
        {C::MnuCommune, "MnuCommune", C::MnuAffichage, 3082, "", "FrmCommune", false, false},
        {C::MnuCalendrier, "MnuCalendrier", C::MnuAffichage, 3083, "", "FrmCalendrier", false, false},
        {C::MnuStatistiques, "MnuStatistiques", C::MnuAffichage, 3084, "", "FrmStats", true, false},
        {C::MnuAnniv, "MnuAnniv", C::MnuAffichage, 3085, "", "FrmAnniv", true, false},
        // The year's anniversaries as a report: the calendar opens with its
        // destination, writes the year there, and its calendar report too.
        {C::MnuRecapAnniv, "MnuRecapAnniv", C::MnuAffichage, 4610, "", "", true, false},
        {C::MnuImpAnniv, "MnuImpAnniv", C::MnuRecapAnniv, 4611, "", "FrmAnniv:Imp", true, false},
        {C::MnuRTFAnniv, "MnuRTFAnniv", C::MnuRecapAnniv, 4612, "", "FrmAnniv:RTF", true, false},
        {C::MnuHTMLAnniv, "MnuHTMLAnniv", C::MnuRecapAnniv, 4613, "", "FrmAnniv:HTML", true, false},
        {C::MnuUsuels, "MnuUsuels", C::MnuAffichage, 3086, "", "FrmUsuels", false, false},
        {C::MnuAfffic, "MnuAfffic", C::MnuAffichage, 3087, "F3", "FrmDebut", true, true},
        {C::MnuFenetre, "MnuFenetre", C::Aucune, 3006, "", "", false, false},
        {C::MnuGauche, "MnuGauche", C::MnuFenetre, 3090, "Alt+Left", "", true, false},
        {C::MnuDroite, "MnuDroite", C::MnuFenetre, 3091, "Alt+Right", "", true, false},
        {C::MnuAgrandir, "MnuAgrandir", C::MnuFenetre, 3092, "Ctrl++", "", true, false},
        {C::MnuDiminuer, "MnuDiminuer", C::MnuFenetre, 3093, "Ctrl+-", "", true, false},
        {C::MnuNiveau, "MnuNiveau", C::MnuFenetre, 3094, "", "", true, true},
        {C::MnuNiveau1, "MnuNiveau1", C::MnuNiveau, 3095, "Ctrl+Alt+1", "", true, false},
        {C::MnuNiveau2, "MnuNiveau2", C::MnuNiveau, 3096, "Ctrl+Alt+2", "", true, false},
        {C::MnuNiveau3, "MnuNiveau3", C::MnuNiveau, 3097, "Ctrl+Alt+3", "", true, false},
        {C::MnuNiveau4, "MnuNiveau4", C::MnuNiveau, 3098, "Ctrl+Alt+4", "", true, false},
        {C::MnuArranger, "MnuArranger", C::MnuFenetre, 3099, "", "", false, true},
    };
    return menus;
}

const EntreeMenu& EntreeDe(Commande c) {
    static const auto index = [] {
        std::unordered_map<int, const EntreeMenu*> m;
        for (const auto& e : Menus()) m[static_cast<int>(e.commande)] = &e;
        return m;
    }();
    auto it = index.find(static_cast<int>(c));
    if (it == index.end()) throw std::out_of_range("commande sans entrée de menu");
    return *it->second;
}

const EntreeMenu* EntreeNommee(const std::string& nom) {
    for (const auto& e : Menus())
        if (nom == e.nom) return &e;
    return nullptr;
}

const BoutonOutil& Outil(int numero) {
    static const std::array<BoutonOutil, 35> outils = {{
        {1, "Historique", 1071, C::MnuHisto, true},
        {2, "Ouvrir", 63, C::MnuOuvrir, false},
        {3, "Fermer", 64, C::MnuFermer, false},
        {4, "Enregistrer", 65, C::MnuEnregistrer, false},
        {5, "Imprimer", 66, C::MnuImprimer, false},
        {6, "Sauvegarde", 67, C::MnuSauvegarde, false},
        {7, "Importer", 837, C::MnuImporter, false},
        {8, "Couple", 367, C::MnuRechCouple, false},
        {9, "Exporter", 652, C::MnuExporterSelectif, false},
        {10, "Quitter", 73, C::MnuQuitter, false},
        {11, "Mise \xE0 jour", 74, C::MnuModif, false},
        {12, "Nouvelle fiche", 75, C::MnuNouvInd, false},
        {13, "Liste", 76, C::MnuListe, false},
        {14, "Recherche", 77, C::MnuRecherche, false},
        {15, "Ev\xE9nements", 78, C::MnuEvenements, false},
        {16, "Documents", 79, C::MnuImage, false},
        {17, "Ascendants", 80, C::MnuAscendants, false},
        {18, "Descendants", 81, C::MnuDescendant, false},
        {19, "Parent\xE9", 82, C::MnuParente, false},
        {20, "Arbre Ascendants", 364, C::MnuArbAsc, false},
        {21, "Arbre Descendants", 365, C::MnuArbDesc, false},
        {22, "Param\xE8tres", 85, C::MnuParametres, false},
        {23, "Mots-cl\xE9s", 86, C::MnuMotCle, false},
        {24, "Communes", 87, C::MnuCommune, false},
        {25, "Calendrier", 88, C::MnuCalendrier, false},
        {26, "Statistiques", 89, C::MnuStatistiques, false},
        {27, "Mots usuels", 90, C::MnuUsuels, false},
        {28, "Gauche", 91, C::MnuGauche, false},
        {29, "Droite", 92, C::MnuDroite, false},
        {30, "Anniversaires", 953, C::MnuAnniv, false},
        {31, "Recherche \xE9v\xE9nement", 58, C::MnuRechEvt, false},
        {32, "Fusion", 346, C::CmdFusionFiches, false},
        {33, "De Cujus 1", 357, C::MnuDeCujus1, false},
        {34, "De Cujus 2", 358, C::MnuDeCujus2, false},
        {35, "R\xE9organiser", 344, C::MnuReorganiser, false},
    }};
    if (numero < 1 || numero > 35) throw std::out_of_range("outil hors de 1 à 35");
    return outils[static_cast<std::size_t>(numero - 1)];
}

std::vector<BoutonOutil> BarreOutils(const std::vector<int>& icones) {
    std::vector<BoutonOutil> barre{Outil(1)};
    for (int n : icones) {
        if (n == 99) {
            barre.push_back(BoutonOutil{});
        } else if (n == 7) {
            continue;
        } else {
            const int outil = n < 7 ? n + 2 : n;
            if (outil >= 1 && outil <= 35) barre.push_back(Outil(outil));
        }
    }
    return barre;
}

} // namespace sylvane
