#pragma once

#include <QTest>

#include <tuple>
#include <type_traits>

namespace tarnwick {

/// Text in a table: UTF-8 where it is no QString.
struct RowText : QString
{
    RowText() = default;
    RowText(const char* utf8)
        : QString(QString::fromUtf8(utf8))
    {
    }
    template<class Text>
    requires std::is_convertible_v<Text, QString> RowText(const Text& text)
        : QString(text)
    {
    }
};

/// The table of a test: its "_data" function makes one and calls it for each row, the test itself
/// fetches the row that is its turn.
template<class... Values> class Rows
{
    template<class Value>
    using Given = std::conditional_t<std::is_same_v<Value, QString>, RowText, Value>;

public:
    Rows() { QTest::addColumn<std::tuple<Values...>>("row"); }

    /// @param name the fact that the row checks.
    void operator()(const char* name, const Given<Values>&... values) const
    {
        QTest::newRow(name) << std::tuple<Values...>(values...);
    }

    static std::tuple<Values...> fetch()
    {
        QFETCH(const std::tuple<Values...>, row);
        return row;
    }
};

} // namespace tarnwick
