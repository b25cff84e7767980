#include "CompareCommand.h"

#include "CommandOutput.h"
#include "ComparedFile.h"
#include "EngineSession.h"
#include "ObjectReport.h"
#include "pdf/FailureText.h"
#include "pdf/PDFSavedVersions.h"
#include "versions/VersionCuts.h"

#include <QCoreApplication>

#include <algorithm>
#include <memory>
#include <utility>

namespace tarnwick {

namespace {

/// Objects whose entries are told apart; of more it is only told that they differ.
constexpr std::size_t mostDetailed = 1000;

/// One side of the comparison.
struct Side
{
    std::string file;
    FileBytes bytes; ///< of the whole file
    std::size_t version = 0; ///< from 1; 0 for the whole file
    std::size_t end = 0; ///< of the version
    std::unique_ptr<ComparedFile> opened;
};

/// From two files, or one, to what differs.
class Comparison : public QObject
{
public:
    Comparison(const Arguments& arguments, const FileBytes& bytes, const FileBytes& other)
        : theArguments(arguments)
        , theIsOfOneFile(!arguments.otherFile)
    {
        theBefore.file = arguments.file;
        theBefore.bytes = bytes;
        theAfter.file = arguments.otherFile.value_or(arguments.file);
        theAfter.bytes = other;
        if (theIsOfOneFile) {
            theSaves = std::make_unique<PDFSavedVersions>(bytes);
            connect(
                theSaves.get(), &PDFSavedVersions::finished, this, [this] { chooseVersions(); });
        } else {
            QMetaObject::invokeMethod(
                this, [this] { openFiles(); }, Qt::QueuedConnection);
        }
    }

private:
    void end(ExitStatus status) { QCoreApplication::exit(static_cast<int>(status)); }
    void fail(ExitStatus status, const std::string& file, const std::string& reason)
    {
        end(complain(status, file, reason));
    }

    /// The last two versions of their own, unless others are asked for.
    void chooseVersions()
    {
        std::vector<std::size_t> own;
        for (const SavedVersion& version : theSaves->versions()) {
            if (version.isOwn)
                own.push_back(version.marker);
        }
        const auto last = static_cast<std::int64_t>(own.empty() ? 0 : own.back());
        const std::int64_t to = theArguments.toVersion.value_or(last);
        std::int64_t from = 0;
        for (const std::size_t marker : own) {
            if (static_cast<std::int64_t>(marker) < to)
                from = static_cast<std::int64_t>(marker);
        }
        from = theArguments.fromVersion.value_or(from);
        if (from == 0 && !theArguments.fromVersion)
            return fail(ExitStatus::isWrongUse, theBefore.file,
                "there is no saved version before; name a second file");
        if (takeVersion(theBefore, from) && takeVersion(theAfter, to))
            openBoth();
    }

    /// @returns false when there is no such version, which is then said.
    bool takeVersion(Side& side, std::int64_t version)
    {
        const std::vector<std::size_t> cuts = versionCuts(side.bytes.view());
        const auto count = static_cast<std::int64_t>(cuts.size());
        if (version < 1 || version > count) {
            fail(ExitStatus::isWrongUse, side.file,
                "there is no version " + std::to_string(version) + "; it has "
                    + std::to_string(count));
            return false;
        }
        side.version = static_cast<std::size_t>(version);
        side.end = cuts[side.version - 1];
        return true;
    }

    void openFiles()
    {
        if (theArguments.fromVersion && !takeVersion(theBefore, *theArguments.fromVersion))
            return;
        if (theArguments.toVersion && !takeVersion(theAfter, *theArguments.toVersion))
            return;
        openBoth();
    }

    /// One after the other: a password may be that of both.
    void openBoth()
    {
        open(theBefore, [this] {
            open(theAfter, [this] { readObjects(); });
            if (theAfter.opened)
                theAfter.opened->tryFirst(theBefore.opened->password());
        });
    }

    template<typename Next> void open(Side& side, Next next)
    {
        FileBytes bytes = side.bytes;
        std::string name = side.file;
        if (side.version > 0) {
            bytes = bytes.prefix(side.end);
            name += " (version " + std::to_string(side.version) + ')';
        }
        side.opened = std::make_unique<ComparedFile>(theArguments, name, bytes);
        connect(side.opened.get(), &ComparedFile::opened, this, next);
        connect(
            side.opened.get(), &ComparedFile::failed, this, [this, name](const QString& reason) {
                fail(ExitStatus::isFailed, name, reason.toStdString());
            });
    }

    /// Of versions that go on from each other those that were saved, else all.
    void readObjects()
    {
        if (theIsOfOneFile && theSaves->failure() == PDFFailure::isNone)
            findRewritten();
        if (theIsOfVersions && theWanted.empty())
            return compare({}, {});
        auto* const before = theBefore.opened->document().requestSigns(theWanted, this);
        auto* const after = theAfter.opened->document().requestSigns(theWanted, this);
        const auto go = [this, before, after] {
            if (!before->isFinished() || !after->isFinished())
                return;
            for (const auto& [request, side] :
                {std::pair(before, &theBefore), std::pair(after, &theAfter)}) {
                if (!request->succeeded())
                    return fail(ExitStatus::isFailed, side->opened->name(),
                        failureReason(*request).toStdString());
            }
            compare(before->signs(), after->signs());
        };
        connect(before, &PDFRequest::finished, this, go);
        connect(after, &PDFRequest::finished, this, go);
    }

    void findRewritten()
    {
        const std::size_t count = theSaves->versions().size();
        const std::size_t earlier = std::min(theBefore.version, theAfter.version) - 1;
        const std::size_t later = std::max(theBefore.version, theAfter.version) - 1;
        if (later >= count)
            return;
        const std::optional<ObjectChanges> changes
            = theSaves->chain().changesBetween(earlier, later);
        if (!changes)
            return;
        theIsOfVersions = true;
        theRewritten = changes->replaced;
        for (const auto* list : {&changes->added, &changes->replaced, &changes->freed})
            theWanted.insert(theWanted.end(), list->begin(), list->end());
        std::sort(theWanted.begin(), theWanted.end());
    }

    void compare(const ObjectSigns& before, const ObjectSigns& after)
    {
        const auto differences = theIsOfVersions ? compareVersions(before, after, theRewritten)
                                                 : compareDocuments(before, after, &thePartners);
        for (const ObjectDifference& difference : differences)
            theReport.push_back({difference, {}});
        detail(0);
    }

    /// Which entries of a changed object differ, one object after the other.
    void detail(std::size_t first)
    {
        const auto next = std::find_if(theReport.begin() + static_cast<std::ptrdiff_t>(first),
            theReport.end(), [](const ReportedDifference& one) {
                return one.difference.kind == ObjectDifference::Kind::isChanged
                    && one.difference.hasOtherEntries;
            });
        if (next == theReport.end() || theDetailed++ == mostDetailed)
            return print();
        const auto index = static_cast<std::size_t>(next - theReport.begin());
        const auto ask = [this](Side& side, std::uint32_t number) {
            return side.opened->document().requestObject(static_cast<int>(number), this);
        };
        auto* const before = ask(theBefore, next->difference.before);
        auto* const after = ask(theAfter, next->difference.after);
        const auto go = [this, before, after, index] {
            if (!before->isFinished() || !after->isFinished())
                return;
            theReport[index].entries = differingEntries(before->object().text.toStdString(),
                after->object().text.toStdString(), thePartners,
                theReport[index].difference.isStream);
            before->deleteLater();
            after->deleteLater();
            detail(index + 1);
        };
        connect(before, &PDFRequest::finished, this, go);
        connect(after, &PDFRequest::finished, this, go);
    }

    void print()
    {
        const auto has = [this](auto holds) {
            return std::any_of(theReport.begin(), theReport.end(),
                [holds](const ReportedDifference& one) { return holds(one.difference.kind); });
        };
        ExitStatus status = ExitStatus::isDone;
        if (has([](auto kind) { return kind == ObjectDifference::Kind::isUnreadable; }))
            status = complain(ExitStatus::isIncomplete, theArguments.file,
                "some objects cannot be read, and were not compared");
        if (has(isDifference))
            status = ExitStatus::isDifferent;
        end(printBytes(theArguments.json ? json() : linesOf(theReport), status));
    }

    std::string json() const
    {
        JsonText json = JsonText::ofCommand("compare");
        for (const auto& [key, side] :
            {std::pair("from", &theBefore), std::pair("to", &theAfter)}) {
            json.key(key).open('{').key("file").string(side->file).key("version");
            if (side->version > 0)
                json.number(side->version);
            else
                json.null();
            json.close('}');
        }
        appendDifferences(theReport, json);
        return json.close('}').text() + '\n';
    }

    const Arguments& theArguments;
    bool theIsOfOneFile;
    Side theBefore;
    Side theAfter;
    std::unique_ptr<PDFSavedVersions> theSaves;
    bool theIsOfVersions = false; ///< one goes on from the other
    std::vector<std::uint32_t> theWanted;
    std::vector<std::uint32_t> theRewritten;
    std::map<std::uint32_t, std::uint32_t> thePartners; ///< of two documents' objects
    std::vector<ReportedDifference> theReport;
    std::size_t theDetailed = 0;
};

} // namespace

ExitStatus compareCommand(const Arguments& arguments)
{
    std::string reason;
    bool isRead = true;
    const ExitStatus status
        = runSession(arguments, [&](const FileBytes& bytes) -> std::unique_ptr<QObject> {
              const auto other = arguments.otherFile ? readShared(*arguments.otherFile, reason)
                                                     : std::optional(bytes);
              isRead = other.has_value();
              if (other)
                  return std::make_unique<Comparison>(arguments, bytes, *other);
              QMetaObject::invokeMethod(
                  QCoreApplication::instance(), [] { QCoreApplication::exit(); },
                  Qt::QueuedConnection);
              return std::make_unique<QObject>();
          });
    return isRead ? status : complain(ExitStatus::isFailed, *arguments.otherFile, reason);
}

} // namespace tarnwick
