#include "tests/platform/macos/fakes/ObjectiveC.h"

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <mutex>
#include <string_view>

#include <Foundation/Foundation.h>

#include "tests/platform/macos/fakes/AutoreleasePool.h"

// What the compiler emits for classes and calls: the ABI that it knows as gnustep-2.0, with calls by way of a lookup.
namespace {

using Implementation = id (*)(id, SEL);

struct Selector
{
    const char *name;
    const char *types;
};

struct Method
{
    Implementation implementation;
    const Selector *selector;
    const char *types;
};

struct Methods
{
    Methods *next;
    int count;
    long methodSize;
    Method first[1];
};

struct InstanceVariable
{
    const char *name;
    const char *type;
    int *offset;
    unsigned size;
    unsigned flags;

    [[nodiscard]] unsigned alignment() const { return 1u << (flags >> 3 & 0x3F); }
};

struct InstanceVariables
{
    int count;
    long variableSize;
    InstanceVariable first[1];
};

struct ClassStructure
{
    ClassStructure *isa;
    ClassStructure *superclass;
    const char *name;
    long version;
    unsigned long info;
    long instanceSize; ///< Not positive until the class has been laid out.
    InstanceVariables *variables;
    Methods *methods;
    // More follows, of which nothing is needed here.
};

struct Module
{
    unsigned long version;
    Selector *selectors, *selectorsEnd;
    ClassStructure **classes, **classesEnd;
    // More follows, of which nothing is needed here.
};

struct Slot
{
    void *owner;
    void *cachedFor;
    const char *types;
    int version;
    Implementation implementation;
};

struct Super
{
    id receiver;
    ClassStructure *searched;
};

/// Before each object.
struct Header
{
    std::atomic<int> references;
    const ClassStructure *madeOf;
};

struct Object
{
    ClassStructure *isa; ///< Null once the object has been destroyed.
};

std::atomic<int> living = 0;

[[noreturn]] void fail(const char *what, const char *className = "", const char *selector = "")
{
    std::fprintf(stderr, "the fake of Objective-C: %s: [%s %s]\n", what, className, selector);
    std::abort();
}

Object &objectOf(id object)
{
    return *reinterpret_cast<Object *>(object);
}

Header &headerOf(id object)
{
    return reinterpret_cast<Header *>(object)[-1];
}

const Method *own(const ClassStructure &found, std::string_view name)
{
    for (auto *methods = found.methods; methods; methods = methods->next)
        for (int i = 0; i < methods->count; ++i)
            if (methods->first[i].selector->name == name)
                return &methods->first[i];
    return nullptr;
}

Implementation implementation(const ClassStructure *searched, SEL selector)
{
    const char *const name = reinterpret_cast<const Selector *>(selector)->name;
    for (auto *found = searched; found; found = found->superclass)
        if (const auto *const method = own(*found, name))
            return method->implementation;
    fail("not understood", searched->name, name);
}

id nothing(id, SEL)
{
    return nil;
}

Implementation implementation(id receiver, SEL selector)
{
    if (!receiver)
        return nothing;
    if (!objectOf(receiver).isa)
        fail("a message to an object that nobody owns any more", headerOf(receiver).madeOf->name,
             reinterpret_cast<const Selector *>(selector)->name);
    return implementation(objectOf(receiver).isa, selector);
}

/// Behind what its superclass has.
void layOut(ClassStructure &laidOut)
{
    if (laidOut.instanceSize > 0)
        return;
    long size = sizeof(Object);
    if (laidOut.superclass) {
        layOut(*laidOut.superclass);
        size = laidOut.superclass->instanceSize;
    }
    for (int i = 0; laidOut.variables && i < laidOut.variables->count; ++i) {
        const auto &variable = laidOut.variables->first[i];
        const long alignment = variable.alignment();
        size = (size + alignment - 1) / alignment * alignment;
        *variable.offset = static_cast<int>(size);
        size += variable.size;
    }
    laidOut.instanceSize = size;
    laidOut.isa->superclass = laidOut.superclass ? laidOut.superclass->isa : &laidOut;
}

void construct(id object, const ClassStructure *part)
{
    if (!part)
        return;
    construct(object, part->superclass);
    if (const auto *const constructor = own(*part, ".cxx_construct"))
        constructor->implementation(object, nullptr);
}

id make(ClassStructure &made)
{
    auto *const header =
        static_cast<Header *>(std::calloc(1, sizeof(Header) + static_cast<std::size_t>(made.instanceSize)));
    header->references = 1;
    header->madeOf = &made;
    const id object = reinterpret_cast<id>(header + 1);
    objectOf(object).isa = &made;
    construct(object, &made);
    ++living;
    return object;
}

std::recursive_mutex weakMutex;

/// Where each weak reference points to.
std::map<id *, id> &weakReferences()
{
    static std::map<id *, id> all;
    return all;
}

void destroy(id object)
{
    {
        const std::lock_guard lock(weakMutex);
        for (auto &[place, target] : weakReferences())
            if (target == object)
                *place = target = nil;
    }
    for (const auto *part = headerOf(object).madeOf; part; part = part->superclass)
        if (const auto *const destructor = own(*part, ".cxx_destruct"))
            destructor->implementation(object, nullptr);
    objectOf(object).isa = nullptr;
    --living;
}

} // namespace

// What the compiler calls.
extern "C" {

void __objc_load(Module *module)
{
    for (auto **loaded = module->classes; loaded != module->classesEnd; ++loaded)
        if (*loaded)
            layOut(**loaded);
}

Slot *objc_msg_lookup_sender(id *receiver, SEL selector, id)
{
    static thread_local Slot slot;
    slot.implementation = implementation(*receiver, selector);
    return &slot;
}

Implementation objc_msg_lookup_super(Super *super, SEL selector)
{
    return implementation(super->searched, selector);
}

id objc_retain(id object)
{
    if (object && headerOf(object).references++ <= 0)
        fail("an object that nobody owns any more", headerOf(object).madeOf->name, "retain");
    return object;
}

void objc_release(id object)
{
    if (!object)
        return;
    const int left = --headerOf(object).references;
    if (left < 0)
        fail("once too often", headerOf(object).madeOf->name, "release");
    if (left == 0)
        [static_cast<NSObject *>(object) dealloc];
}

id objc_autorelease(id object)
{
    if (object)
        orvalen::fake::leaveToPool([object] { objc_release(object); });
    return object;
}

id objc_autoreleaseReturnValue(id object)
{
    return objc_autorelease(object);
}

id objc_retainAutoreleasedReturnValue(id object)
{
    return objc_retain(object);
}

id objc_retainAutorelease(id object)
{
    return objc_autorelease(objc_retain(object));
}

id objc_retainAutoreleaseReturnValue(id object)
{
    return objc_retainAutorelease(object);
}

id objc_unsafeClaimAutoreleasedReturnValue(id object)
{
    return object;
}

void objc_storeStrong(id *place, id object)
{
    objc_retain(object);
    const id former = *place;
    *place = object;
    objc_release(former);
}

id objc_storeWeak(id *place, id object)
{
    const std::lock_guard lock(weakMutex);
    return weakReferences()[place] = *place = object;
}

id objc_initWeak(id *place, id object)
{
    return objc_storeWeak(place, object);
}

id objc_loadWeakRetained(id *place)
{
    const std::lock_guard lock(weakMutex);
    return objc_retain(*place);
}

void objc_destroyWeak(id *place)
{
    const std::lock_guard lock(weakMutex);
    weakReferences().erase(place);
}

void objc_enumerationMutation(id)
{
    fail("a list is changed while somebody walks through it");
}

int __gxx_personality_v0(int version, int actions, unsigned long long kind, void *exception, void *context);
int __gnustep_objcxx_personality_v0(int version, int actions, unsigned long long kind, void *exception, void *context)
{
    return __gxx_personality_v0(version, actions, kind, exception, context);
}
}

@implementation NSObject

+ (instancetype)alloc
{
    return make(*reinterpret_cast<ClassStructure *>(self));
}

+ (instancetype)new
{
    return [[self alloc] init];
}

- (instancetype)init
{
    return self;
}

- (void)dealloc
{
    destroy(self);
}

@end

namespace orvalen::fake {

int livingObjects()
{
    return living;
}

void send(void *receiver, SEL selector, void *argument)
{
    const id object = static_cast<id>(receiver);
    reinterpret_cast<void (*)(id, SEL, void *)>(implementation(object, selector))(object, selector, argument);
}

void leaveSomethingToThePool()
{
    objc_autorelease([NSObject new]);
}

} // namespace orvalen::fake
