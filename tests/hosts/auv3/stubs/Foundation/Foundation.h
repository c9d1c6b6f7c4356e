// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>

typedef long NSInteger;
typedef unsigned long NSUInteger;
#if defined(__aarch64__)
typedef bool BOOL;
#else
typedef signed char BOOL;
#endif
#define YES ((BOOL)1)
#define NO ((BOOL)0)
#define nil nullptr

typedef std::int32_t OSStatus;

@class NSString;
@class NSDictionary<Key, Value>;

__attribute__((objc_root_class))
@interface NSObject
+ (instancetype)alloc;
- (instancetype)init;
- (BOOL)isKindOfClass:(Class)kind;
+ (Class)class;
@end

@interface NSString : NSObject
+ (instancetype)stringWithUTF8String:(const char*)bytes;
@property(readonly) const char* UTF8String;
@end

@interface NSConstantString : NSString
@end

@interface NSData : NSObject
+ (instancetype)dataWithBytes:(const void*)bytes length:(NSUInteger)length;
@property(readonly) NSUInteger length;
@property(readonly) const void* bytes;
@end

@interface NSArray<Element> : NSObject
+ (instancetype)arrayWithObjects:(const Element[])objects count:(NSUInteger)count;
- (Element)objectAtIndexedSubscript:(NSUInteger)index;
@property(readonly) NSUInteger count;
@end

@interface NSMutableArray<Element> : NSArray <Element>
+ (instancetype)array;
- (void)addObject:(Element)object;
@end

@interface NSIndexSet : NSObject
- (BOOL)containsIndex:(NSUInteger)index;
@property(readonly) NSUInteger count;
@end

@interface NSArray <Element>(NSExtendedArray)
- (NSIndexSet*)indexesOfObjectsPassingTest:(BOOL (^)(Element object, NSUInteger index, BOOL* stop))predicate;
@end

@interface NSDictionary<Key, Value> : NSObject
+ (instancetype)dictionaryWithObjects:(const Value[])objects
                              forKeys:(const Key[])keys
                                count:(NSUInteger)count;
- (Value)objectForKeyedSubscript:(Key)key;
@property(readonly) NSUInteger count;
@end

@interface NSMutableDictionary<Key, Value> : NSDictionary <Key, Value>
- (void)setObject:(Value)object forKeyedSubscript:(Key)key;
@end

@interface NSDictionary <Key, Value>(NSMutableCopying)
- (NSMutableDictionary<Key, Value>*)mutableCopy;
@end

extern NSString* const NSLocalizedDescriptionKey;

@interface NSError : NSObject
+ (instancetype)errorWithDomain:(NSString*)domain code:(NSInteger)code userInfo:(NSDictionary*)userInfo;
@property(readonly) NSString* domain;
@property(readonly) NSInteger code;
@property(readonly) NSDictionary* userInfo;
@property(readonly) NSString* localizedDescription;
@end

@interface NSURL : NSObject
+ (instancetype)fileURLWithPath:(NSString*)path;
@property(readonly) NSString* path;
@property(readonly) NSString* lastPathComponent;
@end

typedef NSUInteger NSDataReadingOptions;
typedef NSUInteger NSDataWritingOptions;
enum : NSDataWritingOptions { NSDataWritingAtomic = 1 };

@interface NSData (NSURLs)
+ (instancetype)dataWithContentsOfURL:(NSURL*)url
                              options:(NSDataReadingOptions)options
                                error:(NSError**)error;
- (BOOL)writeToURL:(NSURL*)url options:(NSDataWritingOptions)options error:(NSError**)error;
@end

@interface NSThread : NSObject
@property(class, readonly) BOOL isMainThread;
@end

@class NSDispatchQueue;
typedef NSDispatchQueue* dispatch_queue_t;
extern "C" dispatch_queue_t dispatch_get_main_queue();
extern "C" void dispatch_async(dispatch_queue_t queue, void (^block)());
