#pragma once

#include "text/HexStorage.h"
#include "text/PlainTextView.h"

#include <cstddef>
#include <functional>
#include <utility>

namespace tarnwick {

/// Shows bytes of any number as a HexStorage lays them out, to be read, selected and copied.
///
/// What is selected are bytes, in whichever of the two columns that is done: they are shown as
/// selected in both. The caret stands before a byte, in the column that was clicked last. A find
/// bar of the text's kind would find in drawn lines, so it is turned off.
class HexView : public PlainTextView
{
    Q_OBJECT

public:
    explicit HexView(QWidget* parent = nullptr);

    /// Shows other bytes from their beginning.
    void setBytes(const SharedBytes& bytes, const StrayBytes& stray = {});
    /// Marks other bytes of the same as stray.
    void setStray(const StrayBytes& stray);
    const HexStorage& hexStorage() const { return *theBytes; }

    /// Bytes from begin to before end; both are the caret's place while nothing is selected.
    struct Span
    {
        std::size_t begin = 0;
        std::size_t end = 0;
        bool operator==(const Span&) const = default;
    };
    Span selectedBytes() const;
    std::size_t caretByte() const { return theBytes->byteAt(caret()); }
    /// Selects bytes and shows the first of them; what lies behind the last byte is left out.
    void selectBytes(Span span);

    /// Gives the matches of a search that have bytes in a span, to be shown; called at scrolling.
    using MatchFinder = std::function<QList<Span>(Span shown)>;
    void setMatchFinder(MatchFinder finder) { theMatchFinder = std::move(finder); }
    /// Shows what the finder gives by now.
    using PlainTextView::updateMatches;

    /// Longest selection that is copied as text.
    static constexpr std::size_t longestText = std::size_t{4} << 20;

    /// The selected bytes as text: UTF-8 without control characters but blanks and line ends.
    /// Nothing where they are something else, none at all, or more than longestText.
    std::optional<QString> selectionAsText() const;

    Q_INVOKABLE bool validateCommand(const QString& command) const override;

public slots:
    /// Copies the selected bytes as hexadecimal digits, "DE AD BE EF".
    void copy() override;
    /// Copies the selected bytes as the text that they are.
    void copyAsText();

protected:
    TextRange unitAt(TextPosition position, SelectBy by) const override;
    void settle(TextPosition& anchor, TextPosition& caret) const override;
    QList<TextRange> selectedRanges(qsizetype line) const override;
    QList<TextRange> visibleMatches() const override;
    void offerPrimarySelection() override;
    void fillContextMenu(QMenu& menu) override;
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;

private:
    SharedBytes selectedPart() const;
    Span wordAround(std::size_t byte) const;
    void addRanges(Span span, qsizetype line, QList<TextRange>& ranges) const;
    void moveTo(std::size_t byte, bool extend);

    std::shared_ptr<const HexStorage> theBytes;
    MatchFinder theMatchFinder;
    HexStorage::Column theColumn = HexStorage::Column::isHex;
    QPointF thePressPoint;
    bool isDragMeant = false; ///< the pointer has moved farther than a hand trembles
};

} // namespace tarnwick
