#include "ui/frm_texte.h"

#include "text/reglages.h"
#include "text/rtf_ecriture.h"

namespace sylvane {
namespace {

bool MemeStyle(const SegmentRtf& a, const SegmentRtf& b) {
    return a.gras == b.gras && a.italique == b.italique && a.souligne == b.souligne &&
           a.alignement == b.alignement && a.police == b.police && a.taille == b.taille;
}

// Line ends of a plain note as paragraph ends: CR LF, a lone CR or LF.
std::string FinsDeLigne(const std::string& t) {
    std::string r;
    r.reserve(t.size());
    for (std::size_t i = 0; i < t.size(); ++i) {
        if (t[i] == '\r') {
            r += "\r\n";
            if (i + 1 < t.size() && t[i + 1] == '\n') ++i;
        } else if (t[i] == '\n') {
            r += "\r\n";
        } else {
            r += t[i];
        }
    }
    return r;
}

} // namespace

std::vector<SegmentRtf> SegmentsNote(const std::string& texte) {
    const std::size_t debut = texte.find_first_not_of(" \r\n\t");
    if (debut != std::string::npos && texte.compare(debut, 5, "{\\rtf") == 0)
        return Fusionne(LitRtf(std::string_view(texte).substr(debut)));
    SegmentRtf s;
    s.texte = FinsDeLigne(texte);
    return Fusionne({s});
}

std::vector<SegmentRtf> Fusionne(std::vector<SegmentRtf> segments) {
    std::vector<SegmentRtf> r;
    for (auto& s : segments) {
        if (s.texte.empty()) continue;
        if (!r.empty() && MemeStyle(r.back(), s)) r.back().texte += s.texte;
        else r.push_back(std::move(s));
    }
    return r;
}

std::vector<std::string> MotsUsuels(const Reglages& reglages, const std::string& rubrique) {
    std::vector<std::string> mots;
    if (!rubrique.empty())
        for (const auto& [cle, valeur] : reglages.section("Rubrique " + rubrique))
            mots.push_back(valeur.empty() ? cle : valeur);
    if (mots.empty())
        for (const auto& [cle, valeur] : reglages.section("Mots Usuels"))
            mots.push_back(valeur.empty() ? cle : valeur);
    return mots;
}

FrmTexte::FrmTexte(const std::string& texte, std::string titre, std::vector<std::string> motsUsuels)
    : titre_(std::move(titre)), mots_(std::move(motsUsuels)), segments_(SegmentsNote(texte)) {}

void FrmTexte::Sauve(const std::vector<SegmentRtf>& segments) {
    segments_ = Fusionne(segments);
    // A last empty paragraph is no part of the note.
    while (!segments_.empty() && segments_.back().texte.ends_with("\r\n")) {
        segments_.back().texte.resize(segments_.back().texte.size() - 2);
        if (segments_.back().texte.empty()) segments_.pop_back();
    }
    resultat_ = TexteNoteRtf(segments_);
}

void FrmTexte::Abandonne() { resultat_.reset(); }

std::string FrmTexte::ChoisitMot(std::size_t i) {
    if (i >= mots_.size()) return {};
    panneau_ = false;
    return mots_[i];
}

EtatSelection FrmTexte::Etat(const std::vector<SegmentRtf>& selection) {
    EtatSelection e;
    if (selection.empty()) return e;
    const SegmentRtf& p = selection.front();
    e.gras = e.italique = e.souligne = true;
    e.alignement = p.alignement;
    e.police = p.police;
    e.taille = p.taille;
    for (const SegmentRtf& s : selection) {
        e.gras = e.gras && s.gras;
        e.italique = e.italique && s.italique;
        e.souligne = e.souligne && s.souligne;
        if (e.alignement && *e.alignement != s.alignement) e.alignement.reset();
        if (e.police && *e.police != s.police) e.police.reset();
        if (e.taille && *e.taille != s.taille) e.taille.reset();
    }
    return e;
}

} // namespace sylvane
