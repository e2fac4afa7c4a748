#pragma once

#include "presentation/Shared.h"
#include "presentation/shared/keyedDiff.h"

#include <QAbstractListModel>
#include <QVariant>

#include <utility>
#include <vector>

namespace tarnvale {

/// A field of `Row` under the name by which QML reads it.
template<typename Row> struct ListRole {
    const char *name;
    QVariant (*value)(const Row &);
};

/// What is to be read of a row, shared or not.
template<typename Row> const Row &fieldsOf(const Row &row) {
    return row;
}
template<typename Record> const Record &fieldsOf(const Shared<Record> &row) {
    return *row;
}

/// A list of plain records for QML, perhaps shared ones. A record has `key()`, the text by which it stays
/// itself from one list to the next, can be compared, and has a static `roles()`.
///
/// A new list is played as insertions, removals, moves and changed roles; it is never reset, so that what
/// shows it keeps its place.
template<typename Row> class KeyedListModel : public QAbstractListModel {
    using Fields = std::remove_cvref_t<decltype(fieldsOf(std::declval<const Row &>()))>;

public:
    using QAbstractListModel::QAbstractListModel;

    [[nodiscard]] const std::vector<Row> &rows() const { return m_rows; }

    void setRows(std::vector<Row> rows) {
        for (const ListStep &step : keyedDiff(keysOf(m_rows), keysOf(rows)))
            play(step, rows);
        changeRows(std::move(rows));
    }

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override {
        return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
    }

    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override {
        const int number = role - firstRole;
        if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid) ||
            number < 0 || number >= static_cast<int>(Fields::roles().size()))
            return {};
        return Fields::roles()[static_cast<std::size_t>(number)].value(
            fieldsOf(m_rows[static_cast<std::size_t>(index.row())]));
    }

    [[nodiscard]] QHash<int, QByteArray> roleNames() const override {
        QHash<int, QByteArray> names;
        int role = firstRole;
        for (const ListRole<Fields> &each : Fields::roles())
            names[role++] = each.name;
        return names;
    }

private:
    static constexpr int firstRole = Qt::UserRole + 1;

    static std::vector<QString> keysOf(const std::vector<Row> &rows) {
        std::vector<QString> keys;
        keys.reserve(rows.size());
        for (const Row &row : rows)
            keys.push_back(fieldsOf(row).key());
        return keys;
    }

    void play(const ListStep &step, const std::vector<Row> &rows) {
        const auto place = m_rows.begin() + step.row;
        const int last = step.row + step.count - 1;
        switch (step.kind) {
        case ListStep::Kind::remove:
            beginRemoveRows({}, step.row, last);
            m_rows.erase(place, place + step.count);
            endRemoveRows();
            break;
        case ListStep::Kind::insert: {
            const auto source = rows.begin() + step.row;
            beginInsertRows({}, step.row, last);
            m_rows.insert(place, source, source + step.count);
            endInsertRows();
            break;
        }
        case ListStep::Kind::move: // only ever to the front
            beginMoveRows({}, step.row, step.row, {}, step.target);
            std::rotate(m_rows.begin() + step.target, place, place + 1);
            endMoveRows();
            break;
        }
    }

    /// Neighbours are told together: each telling costs the view as much as many rows do.
    void changeRows(std::vector<Row> rows) {
        std::size_t first = 0;
        QList<int> changed;
        for (std::size_t row = 0; row <= rows.size(); ++row) {
            const QList<int> roles = row < rows.size() ? change(row, std::move(rows[row])) : QList<int>();
            if (roles.isEmpty() && !changed.isEmpty())
                Q_EMIT dataChanged(index(static_cast<int>(first)), index(static_cast<int>(row) - 1),
                                   std::exchange(changed, {}));
            if (changed.isEmpty())
                first = row;
            for (const int role : roles)
                if (!changed.contains(role))
                    changed.append(role);
        }
    }

    /// The roles that say something else then.
    QList<int> change(std::size_t row, Row next) {
        if (m_rows[row] == next)
            return {};
        const Row previous = std::exchange(m_rows[row], std::move(next));
        QList<int> changed;
        int role = firstRole;
        for (const ListRole<Fields> &each : Fields::roles()) {
            if (each.value(fieldsOf(previous)) != each.value(fieldsOf(m_rows[row])))
                changed.append(role);
            ++role;
        }
        return changed;
    }

    std::vector<Row> m_rows;
};

} // namespace tarnvale
