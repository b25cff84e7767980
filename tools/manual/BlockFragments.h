#pragma once

#include <QList>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextFragment>

namespace tarnwick {

/// A block's fragments, to be kept while formats change: positions stay, fragments may join.
inline QList<QTextFragment> fragmentsOf(const QTextBlock& block)
{
    QList<QTextFragment> fragments;
    for (auto it = block.begin(); !it.atEnd(); ++it)
        fragments << it.fragment();
    return fragments;
}

/// A cursor over one of them.
inline QTextCursor selected(const QTextBlock& block, const QTextFragment& fragment)
{
    QTextCursor cursor(block);
    cursor.setPosition(fragment.position());
    cursor.setPosition(fragment.position() + fragment.length(), QTextCursor::KeepAnchor);
    return cursor;
}

} // namespace tarnwick
