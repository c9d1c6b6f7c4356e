// SPDX-License-Identifier: GPL-3.0-or-later
#import <Foundation/Foundation.h>

#include <map>
#include <mutex>
#include <set>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#import "hosts/auv3/doubles/PlatformDoubles.h"

#include "hosts/auv3/doubles/ObjectiveCRuntime.hpp"
#include "platform/AtomicFile.hpp"

NSString* const NSLocalizedDescriptionKey = @"NSLocalizedDescription";

@implementation NSObject {
    Class _isa;
}
+ (instancetype)alloc {
    return (__bridge_transfer id)quillo_makeObject((__bridge void*)self);
}
- (instancetype)init {
    return self;
}
- (BOOL)isKindOfClass:(Class)kind {
    return quillo_isKindOf((__bridge void*)self, (__bridge void*)kind);
}
+ (Class)class {
    return self;
}
@end

@implementation NSString {
    std::string _text;
}
+ (instancetype)stringWithUTF8String:(const char*)bytes {
    NSString* made = [[self alloc] init];
    made->_text = bytes;
    return made;
}
- (const char*)UTF8String {
    return _text.c_str();
}
@end

namespace {

/// What the compiler writes for a string in the source.
struct ConstantString {
    const void* isa;
    const char* text;
    unsigned length;
};

}  // namespace

@implementation NSConstantString
- (const char*)UTF8String {
    return ((__bridge const ConstantString*)self)->text;
}
@end

@implementation NSURL {
    NSString* _path;
}
+ (instancetype)fileURLWithPath:(NSString*)path {
    NSURL* made = [[self alloc] init];
    made->_path = path;
    return made;
}
- (NSString*)path {
    return _path;
}
- (NSString*)lastPathComponent {
    const std::string path = _path.UTF8String;
    return @(path.substr(path.find_last_of('/') + 1).c_str());
}
@end

namespace {

/// Does what may fail with a file, and says whether it did not.
template <class Operation>
BOOL withFile(NSError** error, const Operation& operation) {
    try {
        operation();
        return YES;
    } catch (const quillo::FileError& failure) {
        *error = [NSError errorWithDomain:@"NSCocoaErrorDomain"
                                     code:260
                                 userInfo:@{
                                     NSLocalizedDescriptionKey : @(failure.what())
                                 }];
        return NO;
    }
}

}  // namespace

@implementation NSData {
    std::vector<std::uint8_t> _bytes;
}
+ (instancetype)dataWithBytes:(const void*)bytes length:(NSUInteger)length {
    NSData* made = [[self alloc] init];
    const auto* first = static_cast<const std::uint8_t*>(bytes);
    made->_bytes.assign(first, first + length);
    return made;
}
- (NSUInteger)length {
    return _bytes.size();
}
- (const void*)bytes {
    return _bytes.data();
}
+ (instancetype)dataWithContentsOfURL:(NSURL*)url
                              options:(NSDataReadingOptions)options
                                error:(NSError**)error {
    NSData* made = [[self alloc] init];
    return withFile(error, [&] { made->_bytes = quillo::readWholeFile(url.path.UTF8String); }) ? made : nil;
}
- (BOOL)writeToURL:(NSURL*)url options:(NSDataWritingOptions)options error:(NSError**)error {
    return withFile(error,
                    [&] { quillo::writeWholeFile(url.path.UTF8String, _bytes, quillo::Existing::replace); });
}
@end

@implementation NSIndexSet {
@public
    std::set<NSUInteger> _indices;
}
- (BOOL)containsIndex:(NSUInteger)index {
    return _indices.contains(index);
}
- (NSUInteger)count {
    return _indices.size();
}
@end

@implementation NSArray {
@protected
    std::vector<id> _objects;
}
+ (instancetype)arrayWithObjects:(const id[])objects count:(NSUInteger)count {
    NSArray* made = [[self alloc] init];
    made->_objects.assign(objects, objects + count);
    return made;
}
- (id)objectAtIndexedSubscript:(NSUInteger)index {
    return _objects.at(index);
}
- (NSUInteger)count {
    return _objects.size();
}
- (NSIndexSet*)indexesOfObjectsPassingTest:(BOOL (^)(id object, NSUInteger index, BOOL* stop))predicate {
    NSIndexSet* passing = [[NSIndexSet alloc] init];
    BOOL stop = NO;
    for (NSUInteger index = 0; index < _objects.size() && !stop; ++index) {
        if (predicate(_objects[index], index, &stop)) {
            passing->_indices.insert(index);
        }
    }
    return passing;
}
@end

@implementation NSMutableArray
+ (instancetype)array {
    return [[self alloc] init];
}
- (void)addObject:(id)object {
    _objects.push_back(object);
}
@end

@implementation NSDictionary {
@public
    std::map<std::string, id> _values;
}
+ (instancetype)dictionaryWithObjects:(const id[])objects forKeys:(const id[])keys count:(NSUInteger)count {
    NSDictionary* made = [[self alloc] init];
    for (NSUInteger index = 0; index < count; ++index) {
        NSString* key = keys[index];
        made->_values[key.UTF8String] = objects[index];
    }
    return made;
}
- (id)objectForKeyedSubscript:(NSString*)key {
    const auto found = _values.find(key.UTF8String);
    return found == _values.end() ? nil : found->second;
}
- (NSUInteger)count {
    return _values.size();
}
- (id)mutableCopy {
    NSMutableDictionary* copy = [[NSMutableDictionary alloc] init];
    copy->_values = _values;
    return copy;
}
@end

@implementation NSMutableDictionary
- (void)setObject:(id)object forKeyedSubscript:(NSString*)key {
    _values[key.UTF8String] = object;
}
@end

@implementation NSError {
    NSString* _domain;
    NSInteger _code;
    NSDictionary* _userInfo;
}
+ (instancetype)errorWithDomain:(NSString*)domain code:(NSInteger)code userInfo:(NSDictionary*)userInfo {
    NSError* made = [[self alloc] init];
    made->_domain = domain;
    made->_code = code;
    made->_userInfo = userInfo;
    return made;
}
- (NSString*)domain {
    return _domain;
}
- (NSInteger)code {
    return _code;
}
- (NSDictionary*)userInfo {
    return _userInfo;
}
- (NSString*)localizedDescription {
    return _userInfo[NSLocalizedDescriptionKey];
}
@end

namespace {

/// The thread that starts the program.
const std::thread::id mainThread = std::this_thread::get_id();

std::mutex dispatchMutex;
std::vector<void (^)()> dispatched;

}  // namespace

@implementation NSThread
+ (BOOL)isMainThread {
    return std::this_thread::get_id() == mainThread;
}
@end

dispatch_queue_t dispatch_get_main_queue() {
    return nil;
}

void dispatch_async(dispatch_queue_t /*queue*/, void (^block)()) {
    const std::lock_guard lock(dispatchMutex);
    dispatched.push_back(block);
}

namespace quillo::test {

bool runDispatchedBlocks() {
    bool any = false;
    for (;;) {
        std::vector<void (^)()> blocks;
        {
            const std::lock_guard lock(dispatchMutex);
            blocks.swap(dispatched);
        }
        if (blocks.empty()) {
            return any;
        }
        any = true;
        for (auto block : blocks) {
            block();
        }
    }
}

}  // namespace quillo::test
