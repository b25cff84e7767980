#include "ObjectText.h"

#include "ObjectEntry.h"
#include "ValueSpelling.h"

#include <algorithm>

namespace tarnwick {

namespace {

constexpr std::size_t fullLine = 80; ///< characters
constexpr std::string_view omission = "...";

void appendHex(std::string& text, char one)
{
    constexpr char digits[] = "0123456789ABCDEF";
    text += digits[static_cast<unsigned char>(one) >> 4];
    text += digits[static_cast<unsigned char>(one) & 15];
}

bool isPrintable(char one)
{
    return one >= ' ' && one <= '~';
}

} // namespace

ObjectText::ObjectText(const EngineDocument& document)
    : theDocument(document)
    , theContext(document.context())
    , theLongNames(document)
{
}

void ObjectText::begin(bool isShort)
{
    theText.clear();
    theLineStart = 0;
    isShortened = isShort;
    theIsCut = false;
}

std::string ObjectText::spelled(pdf_obj* object)
{
    begin(false);
    put(object, 0);
    if (isFull())
        theText.resize(longestObjectText);
    return std::move(theText);
}

std::string ObjectText::spelledShort(pdf_obj* object)
{
    begin(true);
    put(object, 0);
    return std::move(theText);
}

bool ObjectText::isFull()
{
    const std::size_t most = isShortened ? longestFilterText : longestObjectText;
    theIsCut = theIsCut || theText.size() > most;
    return theText.size() > most;
}

std::string ObjectText::name(std::string_view name)
{
    std::string text = "/";
    for (const char one : name) {
        if (one > ' ' && one <= '~'
            && std::string_view("()<>[]{}/%#").find(one) == std::string::npos) {
            text += one;
        } else {
            text += '#';
            appendHex(text, one);
        }
    }
    return text;
}

void ObjectText::breakLine(int depth)
{
    if (isShortened) {
        theText += ' ';
        return;
    }
    theText += '\n';
    theLineStart = theText.size();
    theText.append(2 * static_cast<std::size_t>(depth), ' ');
}

/// Without anything to be dropped where it throws: values that are no references throw nothing.
void ObjectText::put(pdf_obj* object, int depth)
{
    if (isFull())
        return;
    if (pdf_is_indirect(theContext, object))
        putReference(object, depth);
    else if (pdf_is_dict(theContext, object))
        putDictionary(object, depth);
    else if (pdf_is_array(theContext, object))
        putArray(object, depth);
    else if (pdf_is_name(theContext, object))
        theText += name(theLongNames.whole(pdf_to_name(theContext, object)));
    else if (pdf_is_string(theContext, object))
        putString(object);
    else if (pdf_is_int(theContext, object))
        theText += std::to_string(pdf_to_int64(theContext, object));
    else if (pdf_is_real(theContext, object))
        theText += realText(pdf_to_real(theContext, object));
    else if (pdf_is_bool(theContext, object))
        theText += pdf_to_bool(theContext, object) ? "true" : "false";
    else
        theText += "null";
}

/// What has a number in memory alone stands in the file where the reference is.
void ObjectText::putReference(pdf_obj* reference, int depth)
{
    const int number = pdf_to_num(theContext, reference);
    if (pdf_obj* const value = valueMadeHere(theDocument, reference))
        return put(value, depth + 1);
    theText
        += std::to_string(number) + ' ' + std::to_string(pdf_to_gen(theContext, reference)) + " R";
}

void ObjectText::putDictionary(pdf_obj* dictionary, int depth)
{
    const int count = pdf_dict_len(theContext, dictionary);
    theText += "<<";
    if (depth >= maximumObjectDepth) {
        theIsCut = true;
        theText += omission;
    }
    for (int index = 0; index < count && depth < maximumObjectDepth && !isFull(); ++index) {
        breakLine(depth + 1);
        pdf_obj* const key = pdf_dict_get_key(theContext, dictionary, index);
        theText += name(theLongNames.whole(pdf_to_name(theContext, key))) + ' ';
        put(pdf_dict_get_val(theContext, dictionary, index), depth + 1);
    }
    breakLine(depth);
    theText += ">>";
}

bool ObjectText::hasContainers(pdf_obj* array) const
{
    const int count = pdf_array_len(theContext, array);
    for (int index = 0; index < count; ++index) {
        pdf_obj* const item = pdf_array_get(theContext, array, index);
        if (!pdf_is_indirect(theContext, item)
            && (pdf_is_dict(theContext, item) || pdf_is_array(theContext, item)))
            return true;
    }
    return false;
}

void ObjectText::putArray(pdf_obj* array, int depth)
{
    const int count = pdf_array_len(theContext, array);
    const bool isNested = hasContainers(array);
    theText += '[';
    if (depth >= maximumObjectDepth) {
        theIsCut = true;
        theText += omission;
    }
    bool isOneLine = !isNested;
    for (int index = 0; index < count && depth < maximumObjectDepth && !isFull(); ++index) {
        if (isNested || theText.size() - theLineStart > fullLine) {
            isOneLine = false;
            breakLine(depth + 1);
        } else {
            theText += ' ';
        }
        put(pdf_array_get(theContext, array, index), depth + 1);
    }
    if (isOneLine)
        theText += ' ';
    else
        breakLine(depth);
    theText += ']';
}

void ObjectText::putString(pdf_obj* string)
{
    std::size_t size = 0;
    const char* const start = pdf_to_string(theContext, string, &size);
    const std::string_view bytes(start, std::min(size, longestObjectText));
    const bool isLiteral = std::all_of(bytes.begin(), bytes.end(), isPrintable);
    theText += isLiteral ? '(' : '<';
    for (const char one : bytes) {
        if (!isLiteral) {
            appendHex(theText, one);
            continue;
        }
        if (one == '(' || one == ')' || one == '\\')
            theText += '\\';
        theText += one;
    }
    theText += isLiteral ? ')' : '>';
}

} // namespace tarnwick
