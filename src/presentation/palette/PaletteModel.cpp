#include "presentation/palette/PaletteModel.h"

#include <QCoreApplication>

#include <algorithm>
#include <iterator>

namespace tarnvale {

namespace {

constexpr int firstRole = Qt::UserRole + 1;

bool isSameAction(const PaletteRow &one, const PaletteRow &other) {
    return one.id == other.id;
}

} // namespace

PaletteRow paletteRow(const PaletteItem &item) {
    return {.id = item.id,
            .title = item.title,
            .subtitle = item.subtitle,
            .symbol = item.symbol,
            .tint = item.tint};
}

QString confirmationText(const QString &title) {
    return QCoreApplication::translate("CommandPalette", "Press ↩ again to %1").arg(title.toLower());
}

const std::vector<ListRole<PaletteRow>> &PaletteRow::roles() {
    static const std::vector<ListRole<PaletteRow>> all{
        {"itemId", [](const PaletteRow &row) -> QVariant { return row.id; }},
        {"title", [](const PaletteRow &row) -> QVariant { return row.title; }},
        {"subtitle", [](const PaletteRow &row) -> QVariant { return row.subtitle; }},
        {"symbol", [](const PaletteRow &row) -> QVariant { return row.symbol; }},
        {"tint", [](const PaletteRow &row) -> QVariant { return row.tint; }},
        {"confirmation", [](const PaletteRow &row) -> QVariant { return confirmationText(row.title); }},
    };
    return all;
}

void PaletteModel::setRows(std::vector<PaletteRow> rows) {
    const auto front = std::mismatch(m_rows.begin(), m_rows.end(), rows.begin(), rows.end(), isSameAction);
    const auto behind = std::mismatch(m_rows.rbegin(), std::make_reverse_iterator(front.first), rows.rbegin(),
                                      std::make_reverse_iterator(front.second), isSameAction);
    const auto first = static_cast<int>(front.first - m_rows.begin());
    const auto gone = static_cast<int>(behind.first.base() - front.first);
    const auto come = static_cast<int>(behind.second.base() - front.second);
    if (gone > 0) {
        beginRemoveRows({}, first, first + gone - 1);
        m_rows.erase(front.first, behind.first.base());
        endRemoveRows();
    }
    if (come > 0) {
        beginInsertRows({}, first, first + come - 1);
        m_rows.insert(m_rows.begin() + first, front.second, behind.second.base());
        endInsertRows();
    }
    for (std::size_t row = 0; row < rows.size(); ++row) {
        if (m_rows[row] == rows[row])
            continue;
        m_rows[row] = std::move(rows[row]);
        const QModelIndex changed = index(static_cast<int>(row));
        Q_EMIT dataChanged(changed, changed);
    }
}

int PaletteModel::rowCount(const QModelIndex &parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

QVariant PaletteModel::data(const QModelIndex &index, int role) const {
    const auto number = static_cast<std::size_t>(role - firstRole);
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid) ||
        role < firstRole || number >= PaletteRow::roles().size())
        return {};
    return PaletteRow::roles()[number].value(m_rows[static_cast<std::size_t>(index.row())]);
}

QHash<int, QByteArray> PaletteModel::roleNames() const {
    QHash<int, QByteArray> names;
    int role = firstRole;
    for (const ListRole<PaletteRow> &each : PaletteRow::roles())
        names[role++] = each.name;
    return names;
}

} // namespace tarnvale
