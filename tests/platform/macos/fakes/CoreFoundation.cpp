#include "tests/platform/macos/fakes/CoreFoundation.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <deque>
#include <map>
#include <memory>
#include <mutex>
#include <utility>
#include <vector>

namespace orvalen::fake {

namespace {

std::atomic<int> livingObjects = 0;

[[noreturn]] void fail(const char *why)
{
    std::fprintf(stderr, "Core Foundation's fake: %s\n", why);
    std::abort();
}

/// Never freed (see `make`), so that a use after the last release is found out.
struct Object
{
    enum class Kind : CFTypeID
    {
        string = 7,
        number = 22,
        boolean = 21,
        array = 19,
        dictionary = 18,
        opaque = 99,
    };

    explicit Object(Kind kind, bool isConstant = false) : kind(kind), isConstant(isConstant)
    {
        if (!isConstant)
            ++livingObjects;
    }

    const Kind kind;
    const bool isConstant;
    std::atomic<int> references = 1;

    std::string text;                        // of a string; the name of an opaque thing
    CFNumberType type = kCFNumberSInt64Type; // of a number, as all that follows
    std::int64_t whole = 0;                  // also 0 or 1 of a truth value
    double real = 0.0;
    std::vector<CFTypeRef> items; // of an array, the values of a dictionary, what an opaque thing owns
    std::vector<CFTypeRef> keys;
};

const Object &object(const void *reference)
{
    if (!reference)
        fail("an object was expected, not null");
    const auto *const found = static_cast<const Object *>(reference);
    if (found->references <= 0)
        fail("an object was used that nobody owns any more");
    return *found;
}

const Object &object(const void *reference, Object::Kind kind)
{
    const auto &found = object(reference);
    if (found.kind != kind)
        fail("an object is not of the kind that the function is for");
    return found;
}

Object &owned(const void *reference)
{
    return const_cast<Object &>(object(reference));
}

/// Kept for ever, and where a search for leaks finds it; whether somebody still owns it is counted.
Object *make(Object::Kind kind)
{
    static std::mutex mutex;
    static auto *const all = new std::deque<Object>;
    const std::lock_guard lock(mutex);
    return &all->emplace_back(kind);
}

void requireDefault(CFAllocatorRef allocator)
{
    if (allocator != kCFAllocatorDefault)
        fail("an object was asked of another allocator than the default one");
}

bool isWhole(double value)
{
    return value >= -0x1p63 && value < 0x1p63 && std::trunc(value) == value;
}

/// How many UTF-16 units the text has, which is how Core Foundation counts.
CFIndex lengthOf(const std::string &text)
{
    CFIndex length = 0;
    for (const unsigned char byte : text)
        length += (byte & 0xC0) == 0x80 ? 0 : byte >= 0xF0 ? 2 : 1;
    return length;
}

bool isEqual(const void *one, const void *other)
{
    if (one == other)
        return true;
    const auto &first = object(one);
    const auto &second = object(other);
    return first.kind == Object::Kind::string && second.kind == Object::Kind::string && first.text == second.text;
}

} // namespace

CFTypeRef makeString(const std::string &text)
{
    auto *const string = make(Object::Kind::string);
    string->text = text;
    return string;
}

CFTypeRef makeNumber(std::int64_t value)
{
    auto *const number = make(Object::Kind::number);
    number->whole = value;
    number->real = static_cast<double>(value);
    return number;
}

CFTypeRef makeNumber(double value)
{
    auto *const number = make(Object::Kind::number);
    number->type = kCFNumberDoubleType;
    number->whole = isWhole(value) ? static_cast<std::int64_t>(value) : 0;
    number->real = value;
    return number;
}

CFTypeRef makeArray(std::vector<CFTypeRef> items)
{
    auto *const array = make(Object::Kind::array);
    array->items = std::move(items);
    return array;
}

CFTypeRef makeDictionary(std::initializer_list<std::pair<CFTypeRef, CFTypeRef>> entries)
{
    auto *const dictionary = make(Object::Kind::dictionary);
    for (const auto &[key, value] : entries) {
        dictionary->keys.push_back(key);
        dictionary->items.push_back(value);
    }
    return dictionary;
}

CFTypeRef makeOpaque(const std::string &name, std::vector<CFTypeRef> owned)
{
    auto *const thing = make(Object::Kind::opaque);
    thing->text = name;
    thing->items = std::move(owned);
    return thing;
}

std::string nameOf(CFTypeRef opaque)
{
    return object(opaque, Object::Kind::opaque).text;
}

std::string textOf(CFTypeRef string)
{
    return string ? object(string, Object::Kind::string).text : "null";
}

std::string describe(CFTypeRef reference)
{
    if (!reference)
        return "null";
    const auto &thing = object(reference);
    std::string inside;
    for (std::size_t i = 0; i < thing.items.size(); ++i)
        inside += (i == 0 ? "" : ", ") + (thing.keys.empty() ? "" : describe(thing.keys[i]) + ": ") +
                  describe(thing.items[i]);
    switch (thing.kind) {
    case Object::Kind::string:
        return '"' + thing.text + '"';
    case Object::Kind::number:
        return thing.type == kCFNumberDoubleType
                   ? "double " + std::to_string(thing.real)
                   : (thing.type == kCFNumberIntType ? "int " : "int64 ") + std::to_string(thing.whole);
    case Object::Kind::boolean:
        return thing.whole ? "true" : "false";
    case Object::Kind::array:
        return '[' + inside + ']';
    case Object::Kind::dictionary:
        return '{' + inside + '}';
    default:
        return thing.text;
    }
}

const char *describe(CFAllocatorRef allocator)
{
    return allocator == kCFAllocatorDefault ? "default" : "another";
}

int living()
{
    return livingObjects;
}

} // namespace orvalen::fake

using namespace orvalen::fake;

const CFAllocatorRef kCFAllocatorDefault = nullptr;

namespace {

const Object *constantBoolean(bool value)
{
    auto *const boolean = new Object(Object::Kind::boolean, true);
    boolean->whole = value;
    return boolean;
}

} // namespace

const CFBooleanRef kCFBooleanTrue = reinterpret_cast<CFBooleanRef>(constantBoolean(true));
const CFBooleanRef kCFBooleanFalse = reinterpret_cast<CFBooleanRef>(constantBoolean(false));
const CFDictionaryKeyCallBacks kCFTypeDictionaryKeyCallBacks = {};
const CFDictionaryValueCallBacks kCFTypeDictionaryValueCallBacks = {};

CFTypeRef CFRetain(CFTypeRef cf)
{
    ++owned(cf).references;
    return cf;
}

void CFRelease(CFTypeRef cf)
{
    auto &object = owned(cf);
    if (object.isConstant || --object.references > 0)
        return;
    --livingObjects;
    for (const auto *const key : object.keys)
        CFRelease(key);
    for (const auto *const item : object.items)
        CFRelease(item);
}

CFTypeID CFGetTypeID(CFTypeRef cf)
{
    return static_cast<CFTypeID>(object(cf).kind);
}

CFStringRef __CFStringMakeConstantString(const char *text)
{
    static std::mutex mutex;
    static std::map<std::string, std::unique_ptr<Object>> constants;
    const std::lock_guard lock(mutex);
    auto &constant = constants[text];
    if (!constant) {
        constant = std::make_unique<Object>(Object::Kind::string, true);
        constant->text = text;
    }
    return reinterpret_cast<CFStringRef>(constant.get());
}

CFTypeID CFStringGetTypeID()
{
    return static_cast<CFTypeID>(Object::Kind::string);
}

CFStringRef CFStringCreateWithBytes(CFAllocatorRef alloc, const UInt8 *bytes, CFIndex numBytes,
                                    CFStringEncoding encoding, Boolean isExternalRepresentation)
{
    requireDefault(alloc);
    if (encoding != kCFStringEncodingUTF8 || isExternalRepresentation)
        fail("strings are UTF-8 here, without a byte order mark");
    const std::string text(reinterpret_cast<const char *>(bytes), static_cast<std::size_t>(numBytes));
    return text.find('\xFF') == std::string::npos ? static_cast<CFStringRef>(makeString(text)) : nullptr;
}

CFIndex CFStringGetLength(CFStringRef theString)
{
    return lengthOf(object(theString, Object::Kind::string).text);
}

CFIndex CFStringGetBytes(CFStringRef theString, CFRange range, CFStringEncoding encoding, UInt8 lossByte,
                         Boolean isExternalRepresentation, UInt8 *buffer, CFIndex maxBufLen, CFIndex *usedBufLen)
{
    const auto &text = object(theString, Object::Kind::string).text;
    if (range.location != 0 || range.length != lengthOf(text) || encoding != kCFStringEncodingUTF8 || lossByte ||
        isExternalRepresentation)
        fail("only whole strings are asked for, as UTF-8 without loss");
    const auto size = static_cast<CFIndex>(text.size());
    if (buffer) {
        if (maxBufLen < size)
            fail("a buffer is too small");
        std::memcpy(buffer, text.data(), text.size());
    }
    if (usedBufLen)
        *usedBufLen = size;
    return range.length;
}

CFTypeID CFNumberGetTypeID()
{
    return static_cast<CFTypeID>(Object::Kind::number);
}

CFNumberRef CFNumberCreate(CFAllocatorRef allocator, CFNumberType theType, const void *valuePtr)
{
    requireDefault(allocator);
    switch (theType) {
    case kCFNumberIntType: {
        const auto *const number = makeNumber(std::int64_t{*static_cast<const int *>(valuePtr)});
        owned(number).type = kCFNumberIntType;
        return static_cast<CFNumberRef>(number);
    }
    case kCFNumberSInt64Type:
        return static_cast<CFNumberRef>(makeNumber(*static_cast<const std::int64_t *>(valuePtr)));
    case kCFNumberDoubleType:
        return static_cast<CFNumberRef>(makeNumber(*static_cast<const double *>(valuePtr)));
    default:
        fail("a number of a kind that nobody has asked for yet");
    }
}

Boolean CFNumberGetValue(CFNumberRef number, CFNumberType theType, void *valuePtr)
{
    const auto &found = object(number, Object::Kind::number);
    switch (theType) {
    case kCFNumberSInt64Type:
        *static_cast<std::int64_t *>(valuePtr) = found.whole;
        return found.type != kCFNumberDoubleType || isWhole(found.real);
    case kCFNumberDoubleType:
        *static_cast<double *>(valuePtr) = found.real;
        return true;
    default:
        fail("a number of a kind that nobody has asked for yet");
    }
}

Boolean CFNumberIsFloatType(CFNumberRef number)
{
    return object(number, Object::Kind::number).type == kCFNumberDoubleType;
}

CFTypeID CFBooleanGetTypeID()
{
    return static_cast<CFTypeID>(Object::Kind::boolean);
}

Boolean CFBooleanGetValue(CFBooleanRef boolean)
{
    return object(boolean, Object::Kind::boolean).whole != 0;
}

CFTypeID CFArrayGetTypeID()
{
    return static_cast<CFTypeID>(Object::Kind::array);
}

CFIndex CFArrayGetCount(CFArrayRef theArray)
{
    return static_cast<CFIndex>(object(theArray, Object::Kind::array).items.size());
}

const void *CFArrayGetValueAtIndex(CFArrayRef theArray, CFIndex idx)
{
    return object(theArray, Object::Kind::array).items.at(static_cast<std::size_t>(idx));
}

CFTypeID CFDictionaryGetTypeID()
{
    return static_cast<CFTypeID>(Object::Kind::dictionary);
}

CFDictionaryRef CFDictionaryCreate(CFAllocatorRef allocator, const void **keys, const void **values, CFIndex numValues,
                                   const CFDictionaryKeyCallBacks *keyCallBacks,
                                   const CFDictionaryValueCallBacks *valueCallBacks)
{
    requireDefault(allocator);
    if (keyCallBacks != &kCFTypeDictionaryKeyCallBacks || valueCallBacks != &kCFTypeDictionaryValueCallBacks)
        fail("a dictionary must own what is in it");
    auto *const dictionary = make(Object::Kind::dictionary);
    for (CFIndex i = 0; i < numValues; ++i) {
        dictionary->keys.push_back(CFRetain(keys[i]));
        dictionary->items.push_back(CFRetain(values[i]));
    }
    return reinterpret_cast<CFDictionaryRef>(dictionary);
}

CFIndex CFDictionaryGetCount(CFDictionaryRef theDict)
{
    return static_cast<CFIndex>(object(theDict, Object::Kind::dictionary).keys.size());
}

const void *CFDictionaryGetValue(CFDictionaryRef theDict, const void *key)
{
    const auto &dictionary = object(theDict, Object::Kind::dictionary);
    for (std::size_t i = 0; i < dictionary.keys.size(); ++i)
        if (isEqual(dictionary.keys[i], key))
            return dictionary.items[i];
    return nullptr;
}

void CFDictionaryGetKeysAndValues(CFDictionaryRef theDict, const void **keys, const void **values)
{
    const auto &dictionary = object(theDict, Object::Kind::dictionary);
    if (keys)
        std::copy(dictionary.keys.begin(), dictionary.keys.end(), keys);
    if (values)
        std::copy(dictionary.items.begin(), dictionary.items.end(), values);
}
