#include "app/canevas_pages.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPaintEvent>
#include <QPainter>
#include <QPushButton>
#include <QScrollArea>
#include <QVBoxLayout>

namespace sylvane {
namespace {

// The paper's real size on this screen, times the zoom.
double Echelle(const Feuilletage& f, const QWidget* w) {
    return f.zoom() * w->logicalDpiX() / 1440.0;
}

class Page : public QWidget {
  public:
    Page(const Feuilletage& f, const MetriqueQt& m, QWidget* parent)
        : QWidget(parent), f_(f), m_(m) {
        setAttribute(Qt::WA_OpaquePaintEvent);
    }

  protected:
    void paintEvent(QPaintEvent*) override {
        QPainter p(this);
        p.fillRect(rect(), palette().window());
        if (!f_.pret()) return;
        const double e = Echelle(f_, this);
        const Papier papier = f_.papier();
        p.fillRect(QRectF(0, 0, papier.largeur * e, papier.hauteur * e), Qt::white);
        SurfaceQt s(p, m_, e);
        const auto [ligne, colonne] = f_.position();
        s.Seule(ligne, colonne);
        try {
            f_.dessine(s);
        } catch (const std::exception&) {
            // A base or a template that went away shows an empty sheet; a
            // new drawing writes it again.
        }
    }

  private:
    const Feuilletage& f_;
    const MetriqueQt& m_;
};

} // namespace

CanevasPages::CanevasPages(Feuilletage f, const MetriqueQt& m, QWidget* parent)
    : QWidget(parent), f_(std::move(f)) {
    precedente_ = new QPushButton(this);
    legende_ = new QLabel(this);
    suivante_ = new QPushButton(this);
    reduire_ = new QPushButton(this);
    agrandir_ = new QPushButton(this);
    defile_ = new QScrollArea(this);
    page_ = new Page(f_, m, defile_);
    defile_->setWidget(page_);
    defile_->setAlignment(Qt::AlignCenter);
    defile_->setBackgroundRole(QPalette::Dark);
    rangee_ = new QHBoxLayout;
    for (QWidget* w : {static_cast<QWidget*>(precedente_), static_cast<QWidget*>(legende_),
                       static_cast<QWidget*>(suivante_)})
        rangee_->addWidget(w);
    rangee_->addStretch();
    rangee_->addWidget(reduire_);
    rangee_->addWidget(agrandir_);
    auto* tout = new QVBoxLayout(this);
    tout->setContentsMargins(0, 0, 0, 0);
    tout->addLayout(rangee_);
    tout->addWidget(defile_, 1);
    const std::pair<QPushButton*, std::function<bool()>*> boutons[] = {
        {precedente_, &f_.precedente},
        {suivante_, &f_.suivante},
        {reduire_, &f_.reduire},
        {agrandir_, &f_.agrandir}};
    for (const auto& b : boutons) {
        std::function<bool()>* action = b.second;
        connect(b.first, &QPushButton::clicked, this, [this, action] {
            if ((*action)() && change_) change_();
        });
    }
}

void CanevasPages::AjouteBouton(QWidget* w) { rangee_->addWidget(w); }

void CanevasPages::Ajuste() {
    const double e = Echelle(f_, page_);
    const Papier papier = f_.papier();
    page_->resize(static_cast<int>(static_cast<double>(papier.largeur) * e) + 1,
                  static_cast<int>(static_cast<double>(papier.hauteur) * e) + 1);
    page_->update();
}

} // namespace sylvane
