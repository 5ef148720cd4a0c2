#include "app/fenetre_principale.h"

#include "app/texte_qt.h"
#include "text/messages.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QDialog>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QFileInfo>
#include <QLibraryInfo>
#include <QTranslator>
#include <QHBoxLayout>
#include <QLabel>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenuBar>
#include <QMessageBox>
#include <QMimeData>
#include <QProgressBar>
#include <QPushButton>
#include <QScreen>
#include <QStatusBar>
#include <QTabBar>
#include <QTimer>
#include <QToolBar>
#include <QToolButton>
#include <QUrl>
#include <QVBoxLayout>

#include <algorithm>

namespace sylvane {

bool EtiquetteGlisser(const QString& t, char& genre, std::uint32_t& numero) {
    if (t.size() < 2 || (t[0] != QChar('I') && t[0] != QChar('E'))) return false;
    bool ok = false;
    const qulonglong n = t.mid(1).toULongLong(&ok);
    if (!ok || n == 0 || n > 0xFFFFFFFFull) return false;
    genre = static_cast<char>(t[0].toLatin1());
    numero = static_cast<std::uint32_t>(n);
    return true;
}

namespace {

// The tab strip accepts only drags of persons and events.
class BarreFenetre : public QTabBar {
  public:
    std::function<void(int, const QString&)> depose;
    explicit BarreFenetre(QWidget* parent) : QTabBar(parent) { setAcceptDrops(true); }

  protected:
    void dragEnterEvent(QDragEnterEvent* e) override {
        char g;
        std::uint32_t n;
        if (e->mimeData()->hasText() && EtiquetteGlisser(e->mimeData()->text(), g, n))
            e->acceptProposedAction();
    }
    void dragMoveEvent(QDragMoveEvent* e) override {
        if (tabAt(e->position().toPoint()) >= 0)
            e->acceptProposedAction();
        else
            e->ignore();
    }
    void dropEvent(QDropEvent* e) override {
        const int i = tabAt(e->position().toPoint());
        if (i >= 0 && depose) depose(i, e->mimeData()->text());
        e->acceptProposedAction();
    }
};

// "Label |*.a;*.b|Other|*.c|" as Qt's "Label (*.a *.b);;Other (*.c)".
QString FiltreQt(const std::string& filtre) {
    const QStringList morceaux = Q(filtre).split(QChar('|'));
    QStringList sortie;
    for (int i = 0; i + 1 < morceaux.size(); i += 2) {
        QString libelle = morceaux[i].trimmed();
        QString motifs = morceaux[i + 1].trimmed();
        motifs.replace(QChar(';'), QChar(' '));
        if (motifs.isEmpty()) continue;
        if (!libelle.contains(QChar('('))) libelle += QStringLiteral(" (") + motifs + QChar(')');
        sortie << libelle;
    }
    return sortie.join(QStringLiteral(";;"));
}

// The extension of a filter of one pattern "*.ext", for a saved name typed
// without one.
QString ExtensionUnique(const QString& filtreQt) {
    const int a = filtreQt.indexOf(QStringLiteral("(*.")), b = filtreQt.indexOf(QChar(')'), a);
    if (a < 0 || b < 0) return {};
    const QString ext = filtreQt.mid(a + 2, b - a - 2);
    if (ext.contains(QChar(' ')) || ext.contains(QChar('*'))) return {};
    return ext;
}

} // namespace

MDIForm1Qt::MDIForm1Qt(Application& app)
    : app_(app),
      logique_(std::make_unique<MDIForm1>(app, ServicesUi{*this, *this, *this, *this, *this})),
      contexte_{*logique_, *this} {
    logique_->DefinitVue(this);
    setObjectName(QStringLiteral("MDIForm1"));
    setAcceptDrops(true);

    auto* centre = new QWidget(this);
    auto* pile = new QVBoxLayout(centre);
    pile->setContentsMargins(0, 0, 0, 0);
    pile->setSpacing(0);
    auto* barreFenetre = new BarreFenetre(centre);
    barreFenetre->depose = [this](int i, const QString& t) { DeposeSurOnglet(i, t); };
    onglets_ = barreFenetre;
    onglets_->setObjectName(QStringLiteral("Fenetre"));
    onglets_->setDocumentMode(true);
    onglets_->setExpanding(false);
    onglets_->setVisible(false);
    connect(onglets_, &QTabBar::tabBarClicked, this, [this](int i) {
        if (i < 0) return;
        auto* sw = onglets_->tabData(i).value<QMdiSubWindow*>();
        if (sw && sw->isVisible()) zone_->setActiveSubWindow(sw);
    });
    pile->addWidget(onglets_);
    zone_ = new QMdiArea(centre);
    zone_->setOption(QMdiArea::DontMaximizeSubWindowOnActivation, true);
    zone_->setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    zone_->setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    connect(zone_, &QMdiArea::subWindowActivated, this, [this](QMdiSubWindow* sw) {
        // The family view is the background of the area: when it takes the
        // focus, the other windows stay above it.
        if (sw && sw->widget() && sw->widget()->objectName() == QStringLiteral("FrmDebut"))
            for (QMdiSubWindow* autre : zone_->subWindowList())
                if (autre != sw && autre->isVisible()) autre->raise();
        SynchroniseOnglets();
    });
    pile->addWidget(zone_, 1);

    // The progress panel, under the child windows.
    cdrExecution_ = new QFrame(centre);
    cdrExecution_->setObjectName(QStringLiteral("CdrExecution"));
    static_cast<QFrame*>(cdrExecution_)->setFrameShape(QFrame::StyledPanel);
    auto* ligne = new QHBoxLayout(cdrExecution_);
    titreExecution_ = new QLabel(cdrExecution_);
    QFont gras = titreExecution_->font();
    gras.setBold(true);
    titreExecution_->setFont(gras);
    texteExecution_ = new QLabel(cdrExecution_);
    texteExecution_->setMinimumWidth(240);
    activite_ = new QProgressBar(cdrExecution_);
    activite_->setRange(0, 0);
    activite_->setMaximumWidth(160);
    activite_->setTextVisible(false);
    cmdAnnuler_ = new QPushButton(cdrExecution_);
    cmdAnnuler_->setObjectName(QStringLiteral("CmdAnnuler"));
    connect(cmdAnnuler_, &QPushButton::clicked, this, [this] { arret_ = true; });
    ligne->addWidget(titreExecution_);
    ligne->addWidget(texteExecution_, 1);
    ligne->addWidget(activite_);
    ligne->addWidget(cmdAnnuler_);
    cdrExecution_->setVisible(false);
    pile->addWidget(cdrExecution_);
    setCentralWidget(centre);

    statutPersonne_ = new QLabel(this);
    statutDeCujus1_ = new QLabel(this);
    statutDeCujus2_ = new QLabel(this);
    statusBar()->addWidget(statutPersonne_, 1);
    statusBar()->addPermanentWidget(statutDeCujus1_);
    statusBar()->addPermanentWidget(statutDeCujus2_);

    ConstruitMenus();
    barre_ = addToolBar(QStringLiteral("Toolbar1"));
    barre_->setObjectName(QStringLiteral("Toolbar1"));
    barre_->setIconSize(QSize(24, 24));
    ConstruitBarre();

    minuterie1_ = new QTimer(this);
    minuterie1_->setInterval(60000);
    connect(minuterie1_, &QTimer::timeout, this, [this] { logique_->Minuterie1(); });
    minuterie1_->start();
    minuterie2_ = new QTimer(this);
    minuterie2_->setInterval(1000);
    connect(minuterie2_, &QTimer::timeout, this, &MDIForm1Qt::SynchroniseOnglets);
    minuterie2_->start();

    // On a small screen the window, with its title bar, stays whole on it:
    // the child windows are fitted into the area it leaves them.
    QSize taille(1100, 760);
    if (const QScreen* ecran = screen())
        taille = taille.boundedTo(ecran->availableGeometry().size() - QSize(0, 32));
    resize(taille);
    LangueChangee();
    EtatChange();
}

MDIForm1Qt::~MDIForm1Qt() {
    logique_->DefinitVue(nullptr);
    // The child windows still open are closed by QWidget's destructor, when
    // this window is no longer whole: their activation must not reach it.
    zone_->disconnect(this);
    onglets_->disconnect(this);
}

// --- Menus and tool bar -------------------------------------------------------------

void MDIForm1Qt::ConstruitMenus() {
    for (const EntreeMenu& e : Menus()) {
        const int cle = static_cast<int>(e.commande);
        QMenu* parent = e.parent == Commande::Aucune ? nullptr : menus_.value(static_cast<int>(e.parent));
        const bool estMenu = e.parent == Commande::Aucune || e.commande == Commande::MnuHisto ||
                             e.commande == Commande::MnuLangue || e.commande == Commande::MnuReleve ||
                             e.commande == Commande::MnuDeCujus || e.commande == Commande::MnuInternet ||
                             e.commande == Commande::MnuDepannage || e.commande == Commande::MnuNiveau ||
                             e.commande == Commande::MnuRecapAnniv;
        if (parent && e.separateurAvant) parent->addSeparator();
        if (estMenu) {
            QMenu* m = parent ? parent->addMenu(QString()) : menuBar()->addMenu(QString());
            m->setObjectName(QString::fromLatin1(e.nom));
            menus_[cle] = m;
            actions_[cle] = m->menuAction();
            continue;
        }
        QAction* a = parent->addAction(QString());
        a->setObjectName(QString::fromLatin1(e.nom));
        if (*e.raccourci) a->setShortcut(QKeySequence(QString::fromLatin1(e.raccourci)));
        const Commande c = e.commande;
        connect(a, &QAction::triggered, this, [this, c] { logique_->Execute(c); });
        actions_[cle] = a;
    }
    menuHisto_ = menus_.value(static_cast<int>(Commande::MnuHisto));
    menuLangue_ = menus_.value(static_cast<int>(Commande::MnuLangue));
    for (int n = 1; n <= 4; ++n) {
        QAction* a = Action(static_cast<Commande>(static_cast<int>(Commande::MnuNiveau1) + n - 1));
        a->setCheckable(true);
    }
}

void MDIForm1Qt::LettreMenus() {
    for (const EntreeMenu& e : Menus()) {
        QAction* a = actions_.value(static_cast<int>(e.commande));
        if (a) a->setText(M(e.libelle));
    }
}

void MDIForm1Qt::ConstruitBarre() {
    barre_->clear();
    for (const BoutonOutil& b : BarreOutils(app_.parametres().icones)) {
        if (b.outil == 0) {
            barre_->addSeparator();
            continue;
        }
        const QIcon icone(QStringLiteral(":/icons/%1.png").arg(b.outil, 2, 10, QChar('0')));
        if (b.deroulant) {
            auto* bouton = new QToolButton(barre_);
            bouton->setObjectName(QStringLiteral("Historique"));
            bouton->setIcon(icone);
            bouton->setToolTip(M(b.infobulle));
            bouton->setMenu(menuHisto_);
            bouton->setPopupMode(QToolButton::InstantPopup);
            barre_->addWidget(bouton);
            continue;
        }
        QAction* a = barre_->addAction(icone, M(b.infobulle));
        a->setObjectName(Q(b.cle));
        a->setToolTip(M(b.infobulle));
        a->setData(static_cast<int>(b.commande));
        const Commande c = b.commande;
        connect(a, &QAction::triggered, this, [this, c] { logique_->Execute(c); });
    }
    MajActions();
}

void MDIForm1Qt::MajActions() {
    for (auto it = actions_.begin(); it != actions_.end(); ++it) {
        const auto c = static_cast<Commande>(it.key());
        if (c == Commande::MnuHisto || c == Commande::MnuLangue) continue;
        it.value()->setEnabled(logique_->Active(c));
    }
    for (QAction* a : barre_->actions())
        if (a->data().isValid()) a->setEnabled(logique_->Active(static_cast<Commande>(a->data().toInt())));
}

void MDIForm1Qt::RemplitHistorique() {
    menuHisto_->clear();
    const auto entrees = logique_->Historique();
    for (int i = 0; i < static_cast<int>(entrees.size()); ++i) {
        if (entrees[i].empty()) continue;
        QAction* a = menuHisto_->addAction(QStringLiteral("&%1 %2").arg(i + 1).arg(
            Q(sylvane::Historique::Libelle(entrees[i]))));
        a->setToolTip(CheminQt(entrees[i]));
        connect(a, &QAction::triggered, this, [this, i] {
            logique_->OuvreHistorique(i);
        });
    }
    menuHisto_->setEnabled(!menuHisto_->isEmpty());
}

void MDIForm1Qt::RemplitLangues() {
    menuLangue_->clear();
    for (const std::string& l : logique_->Langues()) {
        QAction* a = menuLangue_->addAction(Q(l));
        a->setCheckable(true);
        a->setChecked(Q(l).compare(Q(logique_->Langue()), Qt::CaseInsensitive) == 0);
        connect(a, &QAction::triggered, this, [this, l] { logique_->ChoisitLangue(l); });
    }
}

// --- What the logic tells ----------------------------------------------------------------

void MDIForm1Qt::PersonneChangee() {
    statutPersonne_->setText(Q(logique_->Statut()));
    statutDeCujus1_->setText(Q(logique_->PanneauDeCujus(1)));
    statutDeCujus2_->setText(Q(logique_->PanneauDeCujus(2)));
    PourChaqueFormulaire([](FormulaireQt* f) { f->PersonneChangee(); });
    Q_EMIT personneChangee();
}

void MDIForm1Qt::EtatChange() {
    const std::string titre = logique_->Titre();
    setWindowTitle(titre.empty() ? QStringLiteral("Sylvane")
                                 : QStringLiteral("Sylvane - ") + CheminQt(titre));
    MajActions();
    for (int n = 1; n <= 4; ++n)
        Action(static_cast<Commande>(static_cast<int>(Commande::MnuNiveau1) + n - 1))
            ->setChecked(logique_->niveau == n);
    // The De Cujus entries show who they are.
    for (int i = 1; i <= 2; ++i) {
        QAction* a = Action(i == 1 ? Commande::MnuDeCujus1 : Commande::MnuDeCujus2);
        const std::string p = logique_->PanneauDeCujus(i);
        a->setText(M(i == 1 ? 3040 : 3041).section(QChar(' '), 0, 2) +
                   (p.empty() ? (i == 1 ? QStringLiteral(" [...]") : QStringLiteral(" {...}"))
                              : QChar(' ') + Q(p)));
    }
    RemplitHistorique();
    statutDeCujus1_->setText(Q(logique_->PanneauDeCujus(1)));
    statutDeCujus2_->setText(Q(logique_->PanneauDeCujus(2)));
}

void MDIForm1Qt::LangueChangee() {
    // Qt's own dialogs (files, colours, fonts) follow the interface's
    // language when Qt has a translation for it.
    const QString langue = Q(logique_->Langue()).toLower();
    const QString code = langue.startsWith(QStringLiteral("fran")) ? QStringLiteral("fr")
                         : langue.startsWith(QStringLiteral("deut")) ? QStringLiteral("de")
                         : langue.startsWith(QStringLiteral("espa")) ? QStringLiteral("es")
                         : langue.startsWith(QStringLiteral("ital")) ? QStringLiteral("it")
                                                                       : QString();
    if (traducteurQt_) {
        QApplication::removeTranslator(traducteurQt_);
        delete traducteurQt_;
        traducteurQt_ = nullptr;
    }
    if (!code.isEmpty()) {
        auto* t = new QTranslator(this);
        if (t->load(QStringLiteral("qtbase_") + code, QLibraryInfo::path(QLibraryInfo::TranslationsPath))) {
            QApplication::installTranslator(t);
            traducteurQt_ = t;
        } else {
            delete t;
        }
    }
    LettreMenus();
    ConstruitBarre();
    RemplitLangues();
    cmdAnnuler_->setText(M(3103));
    PourChaqueFormulaire([](FormulaireQt* f) {
        f->Retraduit();
        if (auto* sw = qobject_cast<QMdiSubWindow*>(f->parentWidget())) {
            sw->setWindowTitle(f->windowTitle());
            // Texts of another language may need more room: the window
            // grows once its layout has taken the new texts.
            QPointer<QMdiSubWindow> p(sw);
            QTimer::singleShot(0, sw, [p] {
                if (p && !p->isMaximized()) p->resize(p->size().expandedTo(p->sizeHint()));
            });
        }
    });
    SynchroniseOnglets();
    Q_EMIT langueChangee();
}

void MDIForm1Qt::VueChangee() { PersonneChangee(); }

void MDIForm1Qt::Quitte() { close(); }

void MDIForm1Qt::Arrange() { zone_->tileSubWindows(); }

void MDIForm1Qt::RafraichitTout() {
    ConstruitBarre();
    EtatChange();
    PersonneChangee();
}

// --- Boxes -------------------------------------------------------------------------------------

void MDIForm1Qt::Information(int n, const std::string& nom) {
    QMessageBox::information(this, QStringLiteral("Sylvane"), MT(n, Q(nom)));
}

void MDIForm1Qt::Texte(const std::string& texte) {
    QMessageBox::warning(this, QStringLiteral("Sylvane"), Q(texte));
}

Reponse MDIForm1Qt::Question(int n, bool annuler, const std::string& nom) {
    // The buttons speak the interface's language, not the system's.
    QMessageBox boite(QMessageBox::Question, QStringLiteral("Sylvane"), MT(n, Q(nom)),
                      QMessageBox::NoButton, this);
    QPushButton* oui = boite.addButton(M(3105), QMessageBox::YesRole);
    QPushButton* non = boite.addButton(M(3106), QMessageBox::NoRole);
    QPushButton* abandon = annuler ? boite.addButton(M(3107), QMessageBox::RejectRole) : nullptr;
    boite.setDefaultButton(oui);
    boite.setEscapeButton(abandon ? abandon : non);
    boite.exec();
    if (boite.clickedButton() == oui) return Reponse::Oui;
    if (boite.clickedButton() == non || !abandon) return Reponse::Non;
    return Reponse::Annuler;
}

// --- File dialogs ------------------------------------------------------------------------------

std::optional<std::string> MDIForm1Qt::Ouvrir(int titre, const std::string& filtre,
                                              const std::string& depart) {
    const QString f = QFileDialog::getOpenFileName(this, M(titre), CheminQt(depart), FiltreQt(filtre));
    if (f.isEmpty()) return std::nullopt;
    return CheminInterne(f);
}

std::optional<std::string> MDIForm1Qt::Enregistrer(int titre, const std::string& filtre,
                                                   const std::string& depart) {
    const QString filtres = FiltreQt(filtre);
    QString choisi;
    QString f = QFileDialog::getSaveFileName(this, M(titre), CheminQt(depart), filtres, &choisi);
    if (f.isEmpty()) return std::nullopt;
    const QString ext = ExtensionUnique(choisi.isEmpty() ? filtres : choisi);
    if (!ext.isEmpty() && QFileInfo(f).suffix().isEmpty()) f += ext;
    return CheminInterne(f);
}

std::optional<std::string> MDIForm1Qt::Dossier(int titre, const std::string& depart) {
    const QString d = QFileDialog::getExistingDirectory(this, M(titre), CheminQt(depart));
    if (d.isEmpty()) return std::nullopt;
    return CheminInterne(d);
}

// --- Progress panel ----------------------------------------------------------------------------

void MDIForm1Qt::Montre(const std::string& titre, const std::string& texte) {
    if (cdrExecution_->isHidden()) {
        arret_ = false;
        cdrExecution_->setVisible(true);
        cmdAnnuler_->setFocus();
        QApplication::setOverrideCursor(Qt::BusyCursor);
        depuisEvenements_.start();
    }
    titreExecution_->setText(Q(titre));
    texteExecution_->setText(Q(texte));
    // The texts show at once, without waiting for the next poll.
    if (depuisEvenements_.elapsed() > 50) Arret();
}

void MDIForm1Qt::Cache() {
    if (cdrExecution_->isHidden()) return;
    cdrExecution_->setVisible(false);
    QApplication::restoreOverrideCursor();
}

// Up even while the main window itself is not shown (tests, start-up).
bool MDIForm1Qt::Visible() const { return !cdrExecution_->isHidden(); }

bool MDIForm1Qt::Arret() {
    // Pending events run at fixed intervals, so that polling costs little
    // in a tight loop.
    if (!depuisEvenements_.isValid() || depuisEvenements_.elapsed() > 40) {
        QApplication::processEvents(QEventLoop::AllEvents, 20);
        depuisEvenements_.restart();
    }
    return arret_;
}

// --- Child windows -----------------------------------------------------------------------------

namespace {

// A closed child window is hidden at once but deleted only later: until
// then it is no longer open, and a new one of the same form may be made.
bool Ouverte(const QMdiSubWindow* sw) { return sw && !sw->isHidden(); }

} // namespace

template <class F> void MDIForm1Qt::PourChaqueFormulaire(F f) const {
    for (const auto& [nom, sw] : fenetres_)
        if (Ouverte(sw))
            if (auto* form = qobject_cast<FormulaireQt*>(sw->widget())) f(form);
}

FormulaireQt* MDIForm1Qt::Formulaire(const std::string& nom) const {
    auto it = fenetres_.find(nom);
    if (it == fenetres_.end() || !Ouverte(it->second)) return nullptr;
    return qobject_cast<FormulaireQt*>(it->second->widget());
}

// A form shown once for each record ("FrmDesImage:12") is made by the
// factory of its name before the ":", and known as a window by the whole.
static std::string NomFabrique(const std::string& formulaire) {
    return formulaire.substr(0, formulaire.find(':'));
}

bool MDIForm1Qt::Disponible(const std::string& formulaire) const {
    return RegistreFormulaires().count(NomFabrique(formulaire)) != 0;
}

void MDIForm1Qt::Ouvre(const std::string& formulaire) {
    auto it = fenetres_.find(formulaire);
    if (it != fenetres_.end() && Ouverte(it->second)) {
        it->second->show();
        if (auto* f = qobject_cast<FormulaireQt*>(it->second->widget())) f->PersonneChangee();
        zone_->setActiveSubWindow(it->second);
        return;
    }
    auto fabrique = RegistreFormulaires().find(NomFabrique(formulaire));
    if (fabrique == RegistreFormulaires().end()) return;
    FormulaireQt* form = fabrique->second(contexte_);
    if (!form) return;
    form->setObjectName(QString::fromStdString(formulaire));
    form->Retraduit();
    if (form->Modal()) {
        QDialog d(this);
        d.setWindowTitle(form->windowTitle());
        auto* l = new QVBoxLayout(&d);
        l->setContentsMargins(0, 0, 0, 0);
        l->addWidget(form);
        // A form that closes itself ends the dialog; the link goes before
        // the dialog does, for its children die once it is no dialog any more.
        const auto fin = connect(form, &QWidget::destroyed, &d, &QDialog::reject);
        d.exec();
        QObject::disconnect(fin);
        return;
    }
    QMdiSubWindow* sw = zone_->addSubWindow(form);
    sw->setAttribute(Qt::WA_DeleteOnClose);
    sw->setWindowTitle(form->windowTitle());
    sw->setWindowIcon(windowIcon());
    connect(form, &QWidget::windowTitleChanged, sw, &QWidget::setWindowTitle);
    fenetres_[formulaire] = sw;
    if (formulaire == "FrmDebut") {
        sw->showMaximized();
    } else {
        sw->show();
        // A window larger than the area, or cascaded past its edge, would
        // hide its buttons: it is brought whole into the area.
        const QSize place = zone_->viewport()->size();
        if (!place.isEmpty()) {
            const QSize taille = sw->size().boundedTo(place);
            const QPoint coin(std::clamp(sw->x(), 0, place.width() - taille.width()),
                              std::clamp(sw->y(), 0, place.height() - taille.height()));
            if (taille != sw->size() || coin != sw->pos()) sw->setGeometry(QRect(coin, taille));
        }
    }
    zone_->setActiveSubWindow(sw);
    SynchroniseOnglets();
}

void MDIForm1Qt::OuvreNumero(const std::string& formulaire, std::uint32_t n) {
    // The window already on that record: each such form tells its record in
    // the property "numero", which follows a new record once written.
    if (n != 0)
        for (const auto& [cle, sw] : fenetres_)
            if (Ouverte(sw) && NomFabrique(cle) == formulaire && sw->widget() &&
                sw->widget()->property("numero").toUInt() == n) {
                Ouvre(cle);
                return;
            }
    // A new record has no number yet: each of its windows is a new one.
    static unsigned nouveaux = 0;
    Ouvre(formulaire + ":" + std::to_string(n) + (n == 0 ? "." + std::to_string(++nouveaux) : ""));
}

bool MDIForm1Qt::EstOuverte(const std::string& formulaire) const {
    auto it = fenetres_.find(formulaire);
    return it != fenetres_.end() && Ouverte(it->second);
}

void MDIForm1Qt::FermeTout() {
    for (auto& [nom, sw] : fenetres_)
        if (sw) {
            sw->close();
            delete sw.data();
        }
    fenetres_.clear();
    SynchroniseOnglets();
}

int MDIForm1Qt::NombreOuvertes() const {
    int n = 0;
    for (const auto& [nom, sw] : fenetres_) n += Ouverte(sw) ? 1 : 0;
    return n;
}

void MDIForm1Qt::SynchroniseOnglets() {
    // One tab for each child window but the family view, in the order of
    // the area; the tab of the active one is current.
    QList<QMdiSubWindow*> liste;
    for (QMdiSubWindow* sw : zone_->subWindowList())
        if (Ouverte(sw) && sw->widget() && sw->widget()->objectName() != QStringLiteral("FrmDebut"))
            liste << sw;
    const bool bloque = onglets_->blockSignals(true);
    while (onglets_->count() > liste.size()) onglets_->removeTab(onglets_->count() - 1);
    while (onglets_->count() < liste.size()) onglets_->addTab(QString());
    for (int i = 0; i < liste.size(); ++i) {
        onglets_->setTabText(i, liste[i]->windowTitle());
        onglets_->setTabData(i, QVariant::fromValue(liste[i]));
        if (liste[i] == zone_->activeSubWindow()) onglets_->setCurrentIndex(i);
    }
    onglets_->blockSignals(bloque);
    onglets_->setVisible(app_.parametres().barreFenetres && !liste.isEmpty());
}

void MDIForm1Qt::DeposeSurOnglet(int onglet, const QString& etiquette) {
    char genre;
    std::uint32_t numero;
    if (!EtiquetteGlisser(etiquette, genre, numero)) return;
    auto* sw = onglets_->tabData(onglet).value<QMdiSubWindow*>();
    if (!sw) return;
    if (auto* f = qobject_cast<FormulaireQt*>(sw->widget())) f->RecoitGlisser(genre, numero);
}

std::uint32_t MDIForm1Qt::ChoisitPersonne(std::uint32_t depart, int titre) {
    if (!SelecteurPersonne()) return 0;
    return SelecteurPersonne()(contexte_, depart, titre);
}

// --- Window events -----------------------------------------------------------------------------

void MDIForm1Qt::closeEvent(QCloseEvent* e) {
    if (!logique_->DemandeFermeture()) {
        e->ignore();
        return;
    }
    logique_->Termine();
    e->accept();
}

void MDIForm1Qt::dragEnterEvent(QDragEnterEvent* e) {
    if (e->mimeData()->hasUrls()) e->acceptProposedAction();
}

void MDIForm1Qt::dropEvent(QDropEvent* e) {
    const auto urls = e->mimeData()->urls();
    if (urls.isEmpty() || !urls.front().isLocalFile()) return;
    e->acceptProposedAction();
    // The drop ends before the file is opened, so that the dragging program
    // is not held while a long import runs.
    const std::string chemin = CheminInterne(urls.front().toLocalFile());
    QTimer::singleShot(0, this, [this, chemin] { logique_->OuvreFichier(chemin); });
}

} // namespace sylvane
