// LineCursor: where one reader of a file stands among its records.
//
// A reader that goes on from its last record needs no search, and one that goes
// backwards walks each stride of the index once: the cursor notes where its records
// begin, at most 1025 positions. Readers of one file that keep a cursor each don't
// cost each other anything.
//
// A plain value that LineIndex fills in and reads. It belongs to one index, which
// finds out by itself when the file has changed under a cursor, so nobody has to
// reset it. Not synchronised.
#pragma once

#include <vector>

#include "platform/component.h"

namespace Hesperon::specifics {

class LineCursor
{
public:
    // A position in bytes from which the next record met has this number.
    struct LinePlace
    {
        ULONGLONG nRecord = 0;
        ULONGLONG nPos = 0;
        bool operator==(const LinePlace&) const = default;
    };

    const LinePlace& Place() const { return m_place; }
    void MoveTo(const LinePlace& place) { m_place = place; }

    // How often a file was erased and how often its size was read again, as counted by
    // its index. The first makes the place worthless, either makes the notes so.
    struct FileAge
    {
        ULONGLONG nErased = 0;
        ULONGLONG nRefreshed = 0;
        bool operator==(const FileAge&) const = default;
    };
    const FileAge& Age() const { return m_age; }

    // Takes a place over that is right for a file of this age.
    void Renew(const FileAge& age, const LinePlace& place)
    {
        m_age = age;
        m_place = place;
        m_noted.clear();
    }

    // ---- notes: the places of consecutive records, from the start of a walk on

    // Keeps what is noted if that walk began at the same place.
    void BeginNotes(const LinePlace& start)
    {
        if (!m_noted.empty() && start == LinePlace{m_nFirstNoted, m_noted.front()})
            return;
        m_nFirstNoted = start.nRecord;
        m_noted.assign(1, start.nPos);
    }
    // The place of the record after the last one noted.
    void Note(ULONGLONG nPos) { m_noted.push_back(nPos); }
    ULONGLONG LastNoted() const { return m_nFirstNoted + m_noted.size() - 1; }
    // A noted record: from the start of the walk to LastNoted().
    LinePlace NotedPlace(ULONGLONG nRecord) const
    {
        return {nRecord, m_noted[nRecord - m_nFirstNoted]};
    }

private:
    LinePlace m_place;
    FileAge m_age;
    ULONGLONG m_nFirstNoted = 0;
    std::vector<ULONGLONG> m_noted; // positions of records m_nFirstNoted and on
};

} // namespace Hesperon::specifics
