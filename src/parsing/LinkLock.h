// LinkLock holds two locks: first that of the data parser that a record parser is linked
// to, then the record parser's own. A data parser calls its record parser with its lock
// held, so operations of a record parser that may call the data parser take both in this
// order.
#pragma once

#include "interfaces/IDataParser.h"
#include "platform/com_ptr.h"
#include "platform/threads/CriticalSection.h"
#include "src/parsing/IDataParserLock.h"

namespace Hesperon::specifics {

class LinkLock
{
public:
    // cs is the record parser's lock and guards pLink, which isn't counted. A data parser
    // that offers no lock is left out. One whose last reference has gone counts as gone,
    // and the link to it is cut.
    LinkLock(CriticalSection& cs, IQRL_TabulexConverter::IDataParser*& pLink);
    ~LinkLock();
    LinkLock(const LinkLock&) = delete;
    LinkLock& operator=(const LinkLock&) = delete;

private:
    com_ptr<IDataParserLock> Linked();
    void EnterLinked();
    void LeaveLinked();

    CriticalSection& m_cs;
    IQRL_TabulexConverter::IDataParser*& m_pLink;
    com_ptr<IDataParserLock> m_pLinked; // released after both locks
};

} // namespace Hesperon::specifics
