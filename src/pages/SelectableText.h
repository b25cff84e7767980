#pragma once

#include "pdf/PDFSelection.h"

#include <QString>

namespace tarnwick {

/// The text of a document as selecting reads it, while it is being fetched.
class SelectableText
{
public:
    virtual ~SelectableText() = default;

    /// Without a text nothing can be selected or copied.
    virtual bool isThere() const = 0;
    /// Pages 0 to arrivedCount() - 1 are known.
    virtual int arrivedCount() const = 0;
    /// UTF-16 units of a page; 0 where it is not known.
    virtual qsizetype lengthOf(int page) const = 0;
    /// Asks for what has not arrived.
    virtual void fetch() = 0;
    /// What of a selection has arrived.
    virtual QString string(const PDFSelection& selection) const = 0;
};

} // namespace tarnwick
