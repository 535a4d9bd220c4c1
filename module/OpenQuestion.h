// IOpenQuestion: lets a cancel end a question that a run has asked with OnError2 and that
// nobody has answered yet. Internal to the library; a sink that doesn't offer it answers its
// questions by itself.
#pragma once

#include "platform/component.h"

struct IOpenQuestion : IUnknown
{
    // From any thread, and more than once. The question that is open gets an answer that ends
    // the run; those to come are answered without asking. Waits for nobody.
    virtual void STDMETHODCALLTYPE EndQuestions() = 0;
};

// {0C1A7A3E-5D0B-4B6F-9E3B-7F6C2A1D94B8}
template <>
inline constexpr GUID iid_of<IOpenQuestion> = {
    0x0C1A7A3E, 0x5D0B, 0x4B6F, {0x9E, 0x3B, 0x7F, 0x6C, 0x2A, 0x1D, 0x94, 0xB8}};
