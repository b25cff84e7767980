#pragma once

#include <QAccessibleWidget>

namespace tarnwick {

class NoticeLine;

/// Presents a notice line to screen readers as a message that is read out when it comes.
class NoticeAccessible : public QAccessibleWidget
{
public:
    explicit NoticeAccessible(NoticeLine* line);

    /// From now on notice lines are accessible this way.
    static void install();
    /// The line shows another message: tells screen readers, if there are any.
    static void tell(NoticeLine* line);
};

} // namespace tarnwick
