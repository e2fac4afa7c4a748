#pragma once

#include <memory>
#include <utility>

namespace tarnvale {

/// A record that many lists hold and none changes: lists are made anew at each key of a search, and two
/// thousand records take longer to copy than to look through. Equal when the records are.
template<typename Record> class Shared {
public:
    Shared(Record record) : m_record(std::make_shared<const Record>(std::move(record))) {}

    operator const Record &() const { return *m_record; }
    const Record &operator*() const { return *m_record; }
    const Record *operator->() const { return m_record.get(); }

    friend bool operator==(const Shared &one, const Shared &other) {
        return one.m_record == other.m_record || *one == *other;
    }

private:
    std::shared_ptr<const Record> m_record;
};

} // namespace tarnvale
