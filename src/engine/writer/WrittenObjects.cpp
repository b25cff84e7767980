#include "WrittenObjects.h"

#include "Attempt.h"
#include "UnreadObjects.h"

namespace tarnwick {

namespace {

/// An object that is a reference itself is against the rules, yet it occurs.
constexpr int maximumHops = 16;

} // namespace

WrittenObjects::WrittenObjects(const EngineDocument& document, WrittenStructure structure)
    : theDocument(document)
    , theContext(document.context())
    , theStructure(structure)
{
    if (structure == WrittenStructure::isPlain)
        return;
    const std::vector<int>& pages = document.pageTree().pages;
    thePages.insert(pages.begin(), pages.end());
    const int error = attempt(theContext, [this] {
        theRoot = pdf_to_num(theContext,
            pdf_dict_get(
                theContext, pdf_trailer(theContext, theDocument.document()), PDF_NAME(Root)));
    });
    theError = error == FZ_ERROR_MEMORY ? error : FZ_ERROR_NONE;
}

WrittenObjects::~WrittenObjects()
{
    for (const WrittenObject& waiting : theQueue)
        pdf_drop_obj(theContext, waiting.object);
}

WrittenObjects::Resolved WrittenObjects::resolve(pdf_obj* reference)
{
    Resolved result{reference, 0};
    for (int hop = 0; hop < maximumHops && pdf_is_indirect(theContext, result.object); ++hop) {
        result.source = pdf_to_num(theContext, result.object);
        const int error = attempt(
            theContext, [&] { result.object = pdf_resolve_indirect(theContext, result.object); });
        if (error == FZ_ERROR_MEMORY)
            theError = error;
        if (error || !result.object) {
            if (isUnreadable(theDocument, result.source))
                addLost(result.source);
            return {};
        }
    }
    const bool isNothing = pdf_is_indirect(theContext, result.object)
        || pdf_is_null(theContext, result.object) || !result.object;
    return isNothing ? Resolved{} : result;
}

ObjectType WrittenObjects::kindOf(int source) const
{
    if (theStructure == WrittenStructure::isPlain)
        return ObjectType::isPlain;
    if (source == theRoot)
        return ObjectType::isCatalog;
    if (theDocument.pageTree().nodes.count(source) > 0)
        return ObjectType::isPages;
    return thePages.count(source) > 0 ? ObjectType::isPage : ObjectType::isPlain;
}

int WrittenObjects::reserve()
{
    return count(0);
}

/// The next new number, for what has a number in the file.
int WrittenObjects::count(int source)
{
    if (theOrigins.size() < maximumOrigins)
        theOrigins.push_back(static_cast<std::uint32_t>(source));
    return ++theCount;
}

int WrittenObjects::add(pdf_obj* object, int source, int parent)
{
    const int number = count(source);
    theQueue.push_back({pdf_keep_obj(theContext, object), source, number, kindOf(source), parent});
    return theCount;
}

int WrittenObjects::known(int source) const
{
    const auto number = theNumbers.find(source);
    return number != theNumbers.end() ? number->second : 0;
}

int WrittenObjects::numberOf(pdf_obj* reference)
{
    const int first = pdf_to_num(theContext, reference);
    if (const int number = known(first))
        return number;
    const Resolved target = resolve(reference);
    if (!target.object)
        return 0;
    int number = known(target.source);
    if (number == 0) {
        const auto& parents = theDocument.pageTree().parents;
        const auto parent = parents.find(target.source);
        number = add(target.object, target.source, parent != parents.end() ? parent->second : 0);
        theNumbers[target.source] = number;
    }
    theNumbers[first] = number;
    return number;
}

int WrittenObjects::numberOf(int source)
{
    pdf_obj* reference = nullptr;
    const int error = attempt(theContext,
        [&] { reference = pdf_new_indirect(theContext, theDocument.document(), source, 0); });
    if (error) {
        theError = error;
        return 0;
    }
    const int number = numberOf(reference);
    pdf_drop_obj(theContext, reference);
    return number;
}

int WrittenObjects::numberOfInner(pdf_obj* object)
{
    int& number = theInnerNumbers[object];
    if (number == 0)
        number = add(object, 0, 0);
    return number;
}

std::vector<int> WrittenObjects::kidsOf(const WrittenObject& node, pdf_obj* kids)
{
    std::vector<int> numbers;
    const auto& parents = theDocument.pageTree().parents;
    const int count = pdf_array_len(theContext, kids);
    for (int index = 0; index < count; ++index) {
        pdf_obj* kid = pdf_array_get(theContext, kids, index);
        const Resolved target = resolve(kid);
        const ObjectType kind = kindOf(target.source);
        if (!target.object || (kind != ObjectType::isPage && kind != ObjectType::isPages))
            continue;
        const auto parent = parents.find(target.source);
        const bool isHome = parent != parents.end() && parent->second == node.source;
        if (kind == ObjectType::isPages && isHome)
            numbers.push_back(numberOf(kid));
        else if (kind == ObjectType::isPage && isHome
            && thePlacedPages.insert(target.source).second)
            numbers.push_back(numberOf(kid));
        else if (kind == ObjectType::isPage)
            numbers.push_back(add(target.object, target.source, node.source));
    }
    return numbers;
}

bool WrittenObjects::takeNext(WrittenObject& next)
{
    if (theQueue.empty())
        return false;
    next = theQueue.front();
    theQueue.pop_front();
    return true;
}

} // namespace tarnwick
