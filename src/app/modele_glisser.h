// A table of the logic's rows that are dragged out as their tag ("I<n>" for
// a person, "E<n>" for an event), which the tabs and the other forms accept.
#pragma once

#include <QAbstractTableModel>
#include <QHeaderView>
#include <QMimeData>
#include <QStringList>
#include <QTableView>

#include <string>

namespace sylvane {

class ModeleGlisser : public QAbstractTableModel {
  public:
    using QAbstractTableModel::QAbstractTableModel;

    Qt::ItemFlags flags(const QModelIndex& index) const override {
        if (!index.isValid()) return Qt::NoItemFlags;
        return Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsDragEnabled;
    }
    QStringList mimeTypes() const override { return {QStringLiteral("text/plain")}; }
    QMimeData* mimeData(const QModelIndexList& indexes) const override {
        if (indexes.isEmpty()) return nullptr;
        const std::string tag = TagLigne(indexes.front().row());
        if (tag.empty()) return nullptr;
        auto* m = new QMimeData;
        m->setText(QString::fromStdString(tag));
        return m;
    }
    Qt::DropActions supportedDragActions() const override { return Qt::CopyAction; }
    // The logic's rows changed: the view reads them again.
    void Recharge() {
        beginResetModel();
        endResetModel();
    }

  protected:
    // The drag tag of a row, "" when it has none.
    virtual std::string TagLigne(int ligne) const = 0;
};

// The grid over such a model: whole rows, read-only, dragged out, rows as
// high as the text.
inline QTableView* GrilleGlisser(QWidget* parent) {
    auto* g = new QTableView(parent);
    g->setSelectionBehavior(QAbstractItemView::SelectRows);
    g->setSelectionMode(QAbstractItemView::SingleSelection);
    g->setEditTriggers(QAbstractItemView::NoEditTriggers);
    g->setDragEnabled(true);
    g->setDragDropMode(QAbstractItemView::DragOnly);
    g->setAlternatingRowColors(true);
    g->setWordWrap(false);
    g->verticalHeader()->hide();
    g->verticalHeader()->setDefaultSectionSize(g->fontMetrics().height() + 6);
    g->horizontalHeader()->setStretchLastSection(true);
    g->horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    g->setTabKeyNavigation(false);
    return g;
}

} // namespace sylvane
