#pragma once

#include "presentation/palette/PaletteItem.h"
#include "presentation/shared/KeyedListModel.h"

#include <QAbstractListModel>

#include <vector>

namespace tarnvale {

/// An action as the palette shows it.
struct PaletteRow {
    QString id;
    QString title;
    QString subtitle;
    QString symbol;
    QString tint;

    [[nodiscard]] static const std::vector<ListRole<PaletteRow>> &roles();

    bool operator==(const PaletteRow &) const = default;
};

[[nodiscard]] PaletteRow paletteRow(const PaletteItem &item);

/// What stands in the place of the subtitle while the action of that title waits for its second press.
[[nodiscard]] QString confirmationText(const QString &title);

/// The rows of the palette for QML.
///
/// A letter typed can bring or take ten thousand rows, so unlike `KeyedListModel` it plays no more than one
/// removal and one insertion: of what lies between the rows that stay in front and those that stay behind.
class PaletteModel : public QAbstractListModel {
    Q_OBJECT

public:
    using QAbstractListModel::QAbstractListModel;

    [[nodiscard]] const std::vector<PaletteRow> &rows() const { return m_rows; }
    void setRows(std::vector<PaletteRow> rows);

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

private:
    std::vector<PaletteRow> m_rows;
};

} // namespace tarnvale
