#include "app/frm_texte.h"

#include "app/texte_qt.h"

#include <QAction>
#include <QFontComboBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QListWidget>
#include <QSpinBox>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextEdit>
#include <QToolBar>
#include <QToolButton>
#include <QVBoxLayout>

#include <cmath>

namespace sylvane {
namespace {

Qt::Alignment VersQt(Alignement a) {
    switch (a) {
    case Alignement::Centre: return Qt::AlignHCenter;
    case Alignement::Droite: return Qt::AlignRight;
    case Alignement::Justifie: return Qt::AlignJustify;
    case Alignement::Gauche: break;
    }
    return Qt::AlignLeft;
}

Alignement DepuisQt(Qt::Alignment a) {
    a &= Qt::AlignHorizontal_Mask;
    if (a & Qt::AlignHCenter) return Alignement::Centre;
    if (a & (Qt::AlignRight | Qt::AlignTrailing)) return Alignement::Droite;
    if (a & Qt::AlignJustify) return Alignement::Justifie;
    return Alignement::Gauche;
}

QTextCharFormat Format(const SegmentRtf& s) {
    QTextCharFormat f;
    f.setFontWeight(s.gras ? QFont::Bold : QFont::Normal);
    f.setFontItalic(s.italique);
    f.setFontUnderline(s.souligne);
    if (!s.police.empty()) f.setFontFamilies(QStringList{Q(s.police)});
    if (s.taille > 0) f.setFontPointSize(s.taille / 2.0);
    return f;
}

// The style of a run from a character format and its paragraph.
SegmentRtf Style(const QTextCharFormat& f, Qt::Alignment a) {
    SegmentRtf s;
    s.gras = f.fontWeight() >= QFont::DemiBold;
    s.italique = f.fontItalic();
    s.souligne = f.fontUnderline();
    s.alignement = DepuisQt(a);
    if (f.hasProperty(QTextFormat::FontFamilies)) {
        const QStringList familles = f.property(QTextFormat::FontFamilies).toStringList();
        if (!familles.isEmpty()) s.police = A(familles.front());
    }
    if (f.hasProperty(QTextFormat::FontPointSize) && f.fontPointSize() > 0)
        s.taille = static_cast<int>(std::lround(f.fontPointSize() * 2));
    return s;
}

// The runs of the characters [debut, fin) of the document, paragraph ends
// included.
std::vector<SegmentRtf> Runs(const QTextDocument& doc, int debut, int fin) {
    std::vector<SegmentRtf> r;
    for (QTextBlock b = doc.findBlock(debut); b.isValid() && b.position() < fin; b = b.next()) {
        const Qt::Alignment a = b.blockFormat().alignment();
        for (auto it = b.begin(); !it.atEnd(); ++it) {
            const QTextFragment fr = it.fragment();
            const int d = std::max(debut, fr.position());
            const int f = std::min(fin, fr.position() + fr.length());
            if (d >= f) continue;
            SegmentRtf s = Style(fr.charFormat(), a);
            s.texte = A(fr.text().mid(d - fr.position(), f - d));
            r.push_back(std::move(s));
        }
        // The paragraph end belongs to the paragraph it ends.
        const int finBloc = b.position() + b.length() - 1;
        if (b.next().isValid() && finBloc >= debut && finBloc < fin) {
            SegmentRtf s = r.empty() || b.length() == 1 ? Style(b.charFormat(), a) : r.back();
            s.alignement = DepuisQt(a);
            s.texte = "\r\n";
            r.push_back(std::move(s));
        }
    }
    return Fusionne(std::move(r));
}

} // namespace

void DocumentDepuisSegments(QTextDocument& doc, const std::vector<SegmentRtf>& segments) {
    doc.clear();
    QTextCursor c(&doc);
    for (const SegmentRtf& s : segments) {
        const QTextCharFormat f = Format(s);
        std::size_t debut = 0;
        while (true) {
            const std::size_t fin = s.texte.find("\r\n", debut);
            const std::string partie = s.texte.substr(debut, fin == std::string::npos ? fin : fin - debut);
            QTextBlockFormat bf = c.blockFormat();
            bf.setAlignment(VersQt(s.alignement));
            c.setBlockFormat(bf);
            if (!partie.empty()) c.insertText(Q(partie), f);
            if (fin == std::string::npos) break;
            // The paragraph end carries the style of its run.
            c.setBlockCharFormat(f);
            c.insertBlock(QTextBlockFormat(), f);
            debut = fin + 2;
        }
    }
}

std::vector<SegmentRtf> SegmentsDepuisDocument(const QTextDocument& doc) {
    return Runs(doc, 0, doc.characterCount() - 1);
}

std::vector<SegmentRtf> SegmentsSelection(const QTextCursor& curseur) {
    if (!curseur.hasSelection() || !curseur.document())
        return {Style(curseur.charFormat(), curseur.blockFormat().alignment())};
    return Runs(*curseur.document(), curseur.selectionStart(), curseur.selectionEnd());
}

FrmTexteQt::FrmTexteQt(const std::string& texte, const std::string& titre,
                       std::vector<std::string> motsUsuels, QWidget* parent)
    : QDialog(parent), logique_(texte, titre, std::move(motsUsuels)) {
    auto* l = new QVBoxLayout(this);
    barre_ = new QToolBar(this);
    barre_->setToolButtonStyle(Qt::ToolButtonTextOnly);
    l->addWidget(barre_);

    editeur_ = new QTextEdit(this);
    editeur_->setTabChangesFocus(true);
    mots_ = new QListWidget(this);
    mots_->hide();
    mots_->setMaximumWidth(220);
    auto* centre = new QHBoxLayout;
    centre->addWidget(editeur_, 1);
    centre->addWidget(mots_);
    l->addLayout(centre, 1);

    // By position as the program always had them: save and cancel, the
    // styles, the alignments, the clipboard, the usual words.
    Ajoute("Sauve", QKeySequence(Qt::CTRL | Qt::Key_Return));
    Ajoute("Abandon", QKeySequence());
    barre_->addSeparator();
    Ajoute("Gras", QKeySequence::Bold)->setCheckable(true);
    Ajoute("Italique", QKeySequence::Italic)->setCheckable(true);
    Ajoute("Souligné", QKeySequence::Underline)->setCheckable(true);
    barre_->addSeparator();
    Ajoute("Gauche", QKeySequence(Qt::CTRL | Qt::Key_L))->setCheckable(true);
    Ajoute("Centre", QKeySequence(Qt::CTRL | Qt::Key_E))->setCheckable(true);
    Ajoute("Droite", QKeySequence(Qt::CTRL | Qt::Key_R))->setCheckable(true);
    barre_->addSeparator();
    Ajoute("Couper", QKeySequence());
    Ajoute("Copier", QKeySequence());
    Ajoute("Coller", QKeySequence());
    barre_->addSeparator();
    Ajoute("Mot Usuel", QKeySequence(Qt::Key_F4))->setCheckable(true);
    // The font and the size of the selection, on a row of their own.
    lPolice_ = new QLabel(this);
    police_ = new QFontComboBox(this);
    lPolice_->setBuddy(police_);
    lTaille_ = new QLabel(this);
    taille_ = new QSpinBox(this);
    taille_->setRange(4, 96);
    lTaille_->setBuddy(taille_);
    auto* polices = new QHBoxLayout;
    polices->addWidget(lPolice_);
    polices->addWidget(police_);
    polices->addSpacing(12);
    polices->addWidget(lTaille_);
    polices->addWidget(taille_);
    polices->addStretch(1);
    l->insertLayout(1, polices);
    // Save with Ctrl+S too.
    Action("Sauve")->setShortcuts({QKeySequence(Qt::CTRL | Qt::Key_Return),
                                   QKeySequence(Qt::CTRL | Qt::Key_Enter), QKeySequence::Save});

    connect(Action("Sauve"), &QAction::triggered, this, &FrmTexteQt::Sauve);
    connect(Action("Abandon"), &QAction::triggered, this, &QDialog::reject);
    connect(Action("Gras"), &QAction::triggered, this, [this](bool on) {
        Style([on](QTextCharFormat& f) { f.setFontWeight(on ? QFont::Bold : QFont::Normal); });
    });
    connect(Action("Italique"), &QAction::triggered, this,
            [this](bool on) { Style([on](QTextCharFormat& f) { f.setFontItalic(on); }); });
    connect(Action("Souligné"), &QAction::triggered, this,
            [this](bool on) { Style([on](QTextCharFormat& f) { f.setFontUnderline(on); }); });
    connect(Action("Gauche"), &QAction::triggered, this, [this] { Aligne(Qt::AlignLeft); });
    connect(Action("Centre"), &QAction::triggered, this, [this] { Aligne(Qt::AlignHCenter); });
    connect(Action("Droite"), &QAction::triggered, this, [this] { Aligne(Qt::AlignRight); });
    connect(Action("Couper"), &QAction::triggered, editeur_, &QTextEdit::cut);
    connect(Action("Copier"), &QAction::triggered, editeur_, &QTextEdit::copy);
    connect(Action("Coller"), &QAction::triggered, editeur_, &QTextEdit::paste);
    connect(Action("Mot Usuel"), &QAction::triggered, this, [this] {
        logique_.BasculePanneau();
        mots_->setVisible(logique_.PanneauMots());
        if (logique_.PanneauMots()) {
            mots_->setFocus();
            if (mots_->count() && !mots_->currentItem()) mots_->setCurrentRow(0);
        }
    });
    connect(police_, &QFontComboBox::currentFontChanged, this, [this](const QFont& f) {
        const QString famille = f.family();
        Style([famille](QTextCharFormat& c) { c.setFontFamilies(QStringList{famille}); });
    });
    connect(taille_, &QSpinBox::valueChanged, this,
            [this](int t) { Style([t](QTextCharFormat& c) { c.setFontPointSize(t); }); });
    connect(editeur_, &QTextEdit::cursorPositionChanged, this, &FrmTexteQt::Suit);
    connect(editeur_, &QTextEdit::selectionChanged, this, &FrmTexteQt::Suit);
    connect(mots_, &QListWidget::itemClicked, this, [this](QListWidgetItem* it) { InsereMot(mots_->row(it)); });
    connect(mots_, &QListWidget::itemActivated, this, [this](QListWidgetItem* it) { InsereMot(mots_->row(it)); });
    // Copy and cut follow whether something is selected.
    connect(editeur_, &QTextEdit::copyAvailable, Action("Copier"), &QAction::setEnabled);
    connect(editeur_, &QTextEdit::copyAvailable, Action("Couper"), &QAction::setEnabled);
    Action("Copier")->setEnabled(false);
    Action("Couper")->setEnabled(false);

    for (const std::string& m : logique_.MotsUsuels()) mots_->addItem(Q(m));
    Action("Mot Usuel")->setEnabled(!logique_.MotsUsuels().empty());
    DocumentDepuisSegments(*editeur_->document(), logique_.Segments());
    editeur_->moveCursor(QTextCursor::Start);
    Retraduit();
    Suit();
    resize(760, 480);
    editeur_->setFocus();
}

QAction* FrmTexteQt::Ajoute(const char* cle, const QKeySequence& touche) {
    auto* a = barre_->addAction(QString());
    if (!touche.isEmpty()) a->setShortcut(touche);
    // The editor's own keys (cut, copy, paste) stay with the editor.
    a->setShortcutContext(Qt::WindowShortcut);
    actions_.emplace_back(QString::fromUtf8(cle), a);
    return a;
}

QAction* FrmTexteQt::Action(const QString& cle) const {
    for (const auto& [k, a] : actions_)
        if (k == cle) return a;
    return nullptr;
}

void FrmTexteQt::Retraduit() {
    setWindowTitle(logique_.Titre().empty() ? M(3940) : Q(logique_.Titre()));
    // Captions, then tool tips with their keys.
    const char* cles[] = {"Sauve",  "Abandon", "Gras",   "Italique", "Souligné", "Gauche",
                          "Centre", "Droite",  "Couper", "Copier",   "Coller",   "Mot Usuel"};
    const int legendes[] = {3958, 3959, 3955, 3956, 3957, 3960, 3961, 3962, 3963, 3964, 3965, 3966};
    const int bulles[] = {3941, 3942, 3943, 3944, 3945, 3946, 3947, 3948, 3949, 3950, 3951, 3952};
    for (int i = 0; i < 12; ++i) {
        QAction* a = Action(QString::fromUtf8(cles[i]));
        a->setText(M(legendes[i]));
        a->setToolTip(M(bulles[i]));
    }
    // The style buttons show their style.
    auto montre = [this](const char* cle, auto regle) {
        if (auto* b = qobject_cast<QToolButton*>(barre_->widgetForAction(Action(QString::fromUtf8(cle))))) {
            QFont f = b->font();
            regle(f);
            b->setFont(f);
        }
    };
    montre("Gras", [](QFont& f) { f.setBold(true); });
    montre("Italique", [](QFont& f) { f.setItalic(true); });
    montre("Souligné", [](QFont& f) { f.setUnderline(true); });
    lPolice_->setText(M(3953));
    lTaille_->setText(M(3954));
}

void FrmTexteQt::Style(const std::function<void(QTextCharFormat&)>& change) {
    if (suit_) return;
    QTextCharFormat f;
    change(f);
    editeur_->mergeCurrentCharFormat(f);
    editeur_->setFocus();
}

void FrmTexteQt::Aligne(Qt::Alignment a) {
    editeur_->setAlignment(a);
    Suit();
    editeur_->setFocus();
}

void FrmTexteQt::Suit() {
    // The buttons, the font and the size show the selection's style; a
    // mixed selection shows none.
    const EtatSelection e = FrmTexte::Etat(SegmentsSelection(editeur_->textCursor()));
    suit_ = true;
    Action("Gras")->setChecked(e.gras);
    Action("Italique")->setChecked(e.italique);
    Action("Souligné")->setChecked(e.souligne);
    Action("Gauche")->setChecked(e.alignement == Alignement::Gauche);
    Action("Centre")->setChecked(e.alignement == Alignement::Centre);
    Action("Droite")->setChecked(e.alignement == Alignement::Droite);
    if (!e.police) police_->setCurrentIndex(-1);
    else police_->setCurrentFont(e.police->empty() ? editeur_->document()->defaultFont()
                                                    : QFont(Q(*e.police)));
    if (!e.taille) taille_->clear();
    else
        taille_->setValue(*e.taille > 0 ? *e.taille / 2 : editeur_->document()->defaultFont().pointSize());
    suit_ = false;
}

void FrmTexteQt::InsereMot(int i) {
    const std::string mot = logique_.ChoisitMot(static_cast<std::size_t>(i));
    if (!mot.empty()) editeur_->textCursor().insertText(Q(mot));
    mots_->setVisible(logique_.PanneauMots());
    Action("Mot Usuel")->setChecked(logique_.PanneauMots());
    editeur_->setFocus();
}

void FrmTexteQt::Sauve() {
    logique_.Sauve(SegmentsDepuisDocument(*editeur_->document()));
    accept();
}

} // namespace sylvane
