// list_objects [--times] FILE: prints what the table of objects has of a file's objects in use, a
// line for each as `qpdf --show-xref` has it, sorted; the engine's word for those that the listing
// does not show. With --times how long the scan, the engine's table, kinds and connections take, in
// milliseconds, and how many rows there are. Exit status 3 where the engine does not open the file.

#include "ObjectRows.h"
#include "files/FileBytes.h"
#include "pdf/PDFDocument.h"

#include <QCoreApplication>
#include <QElapsedTimer>

#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

using namespace tarnwick;

namespace {

class Clock
{
public:
    Clock() { theClock.start(); }
    void tell(const char* what)
    {
        std::printf("%-12s %8.1f ms\n", what, static_cast<double>(theClock.nsecsElapsed()) / 1e6);
        theClock.start();
    }

private:
    QElapsedTimer theClock;
};

std::shared_ptr<const CrossReference> tableOf(PDFDocument& document)
{
    while (document.state() == PDFDocument::State::isOpening)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    if (document.state() != PDFDocument::State::isOpen)
        return nullptr;
    const PDFTableRequest* const request = document.requestTable(&document);
    while (!request->isFinished())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    return request->table();
}

ObjectFacts scanned(const FileBytes& bytes)
{
    const auto source = std::make_shared<SourceText>(SharedBytes{bytes.view(), bytes.owner()});
    source->makeListing(true);
    ObjectFacts facts;
    facts.source = source;
    return facts;
}

void printRows(const ObjectFacts& facts)
{
    std::vector<std::string> lines;
    for (const std::uint32_t row : makeObjectRows(facts, {}, {}).shown) {
        const std::int64_t number = facts.number(row);
        if (number == trailerNumber || facts.standing(row) == ObjectStanding::isReplaced
            || facts.standing(row) == ObjectStanding::isDuplicate
            || facts.standing(row) == ObjectStanding::isFreed)
            continue;
        const auto number32 = std::to_string(number);
        if (facts.isListed(row) || facts.unlisted(row).container == 0)
            lines.push_back(
                number32 + "/" + std::to_string(facts.value(row, ObjectColumn::isGeneration)));
        else
            lines.push_back(number32 + "/0 in " + std::to_string(facts.unlisted(row).container)
                + " at " + std::to_string(facts.unlisted(row).index));
    }
    std::sort(lines.begin(), lines.end());
    for (const std::string& line : lines)
        std::printf("%s\n", line.c_str());
}

void printTimes(ObjectFacts& facts, const CrossReference& table, Clock& clock)
{
    facts.states = ObjectStates::of(facts.catalog());
    clock.tell("states");
    facts.tabled = TabledObjects::of(facts.catalog(), table);
    clock.tell("join");
    facts.kinds = ObjectKinds::of(facts.catalog());
    clock.tell("kinds");
    facts.connections
        = ObjectConnections::of({facts.source, facts.states, facts.kinds, facts.tabled});
    clock.tell("connections");
    for (const auto& [name, filter] : {std::pair("rows", ""), std::pair("unused", "unused")}) {
        const ObjectRows rows = makeObjectRows(facts, readObjectFilter(filter).filter, {});
        clock.tell(name);
        std::printf("%-12s %8zu of %zu\n", name, rows.matching, rows.total);
    }
    std::printf("%-12s %8zu\n", "unlisted", facts.tabled->unlisted().size());
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    const bool measures = argc > 2 && std::string_view(argv[1]) == "--times";
    const auto bytes = FileBytes::read(QString::fromLocal8Bit(argv[argc - 1]));
    if (argc < 2 || !bytes)
        return 2;
    Clock clock;
    ObjectFacts facts = scanned(*bytes);
    if (measures)
        clock.tell("scan");
    PDFDocument document(*bytes);
    const auto table = tableOf(document);
    if (!table)
        return 3;
    if (measures) {
        clock.tell("table");
        printTimes(facts, *table, clock);
        return 0;
    }
    facts.states = ObjectStates::of(facts.catalog());
    facts.tabled = TabledObjects::of(facts.catalog(), *table);
    printRows(facts);
    return 0;
}
