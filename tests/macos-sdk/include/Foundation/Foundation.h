// Declarations of the Foundation framework, as far as the program uses it: signatures, nullability and
// constants as Apple's reference documents them. They let the Mac's files be compiled where no Mac's SDK is;
// nothing is implemented here.
#pragma once

#include <CoreFoundation/CoreFoundation.h>
#include <objc/NSObject.h>
#include <objc/objc.h>
#include <stdint.h>

#define NS_ASSUME_NONNULL_BEGIN _Pragma("clang assume_nonnull begin")
#define NS_ASSUME_NONNULL_END _Pragma("clang assume_nonnull end")
#define NS_ENUM(type, name)                                                                                  \
    enum name : type name;                                                                                   \
    enum name : type
#define NS_OPTIONS(type, name)                                                                               \
    type name;                                                                                               \
    enum : type
#define FOUNDATION_EXPORT extern "C"

NS_ASSUME_NONNULL_BEGIN

@class NSAppleEventDescriptor, NSArray<ObjectType>, NSData, NSDictionary<KeyType, ObjectType>, NSError,
    NSString;

typedef double NSTimeInterval;
typedef NSUInteger NSStringEncoding;
enum : NSStringEncoding { NSUTF8StringEncoding = 4 };

#if __has_feature(objc_arc)
static inline id _Nullable CFBridgingRelease(CFTypeRef CF_CONSUMED _Nullable X) {
    return (__bridge_transfer id)X;
}
#endif

@protocol NSCopying
- (id)copyWithZone:(nullable struct _NSZone*)zone;
@end

typedef struct {
    unsigned long state;
    id __unsafe_unretained _Nullable* _Nullable itemsPtr;
    unsigned long* _Nullable mutationsPtr;
    unsigned long extra[5];
} NSFastEnumerationState;

@protocol NSFastEnumeration
- (NSUInteger)countByEnumeratingWithState:(NSFastEnumerationState*)state
                                  objects:(id __unsafe_unretained _Nullable[_Nonnull])buffer
                                    count:(NSUInteger)len;
@end

@interface NSString : NSObject <NSCopying>
@property(readonly) NSUInteger length;
- (nullable instancetype)initWithBytes:(const void*)bytes
                                length:(NSUInteger)len
                              encoding:(NSStringEncoding)encoding;
- (nullable instancetype)initWithBytesNoCopy:(void*)bytes
                                      length:(NSUInteger)len
                                    encoding:(NSStringEncoding)encoding
                                 deallocator:(void (^_Nullable)(void* bytes, NSUInteger len))deallocator;
- (nullable NSData*)dataUsingEncoding:(NSStringEncoding)encoding allowLossyConversion:(BOOL)lossy;
- (NSString*)stringByAppendingPathComponent:(NSString*)str;
@end

@interface NSData : NSObject <NSCopying>
@property(readonly) NSUInteger length;
@property(readonly) const void* bytes;
- (instancetype)initWithBytesNoCopy:(void*)bytes
                             length:(NSUInteger)length
                        deallocator:(nullable void (^)(void* bytes, NSUInteger length))deallocator;
@end

@interface NSDate : NSObject <NSCopying>
@end

@interface NSNumber : NSObject <NSCopying>
@property(readonly) BOOL boolValue;
@property(readonly) int intValue;
@property(readonly) long long longLongValue;
@property(readonly) double doubleValue;
+ (NSNumber*)numberWithBool:(BOOL)value;
+ (NSNumber*)numberWithInt:(int)value;
+ (NSNumber*)numberWithLongLong:(long long)value;
+ (NSNumber*)numberWithUnsignedLongLong:(unsigned long long)value;
+ (NSNumber*)numberWithDouble:(double)value;
@end

@interface NSArray<__covariant ObjectType> : NSObject <NSCopying, NSFastEnumeration>
@property(readonly) NSUInteger count;
@end

@interface NSMutableArray<ObjectType> : NSArray <ObjectType>
+ (instancetype)array;
- (void)addObject:(ObjectType)anObject;
@end

@interface NSDictionary<__covariant KeyType, __covariant ObjectType> : NSObject <NSCopying, NSFastEnumeration>
@property(readonly) NSUInteger count;
- (nullable ObjectType)objectForKeyedSubscript:(KeyType)key;
@end

@interface NSMutableDictionary<KeyType, ObjectType> : NSDictionary <KeyType, ObjectType>
+ (instancetype)dictionary;
- (void)setObject:(nullable ObjectType)obj forKeyedSubscript:(KeyType<NSCopying>)key;
@end

@interface NSURL : NSObject <NSCopying>
@property(nullable, readonly, copy) NSString* path;
@end

typedef NS_ENUM(NSUInteger, NSSearchPathDirectory) { NSApplicationSupportDirectory = 14 };
typedef NS_OPTIONS(NSUInteger, NSSearchPathDomainMask) { NSUserDomainMask = 1 };

@interface NSFileManager : NSObject
@property(class, readonly, strong) NSFileManager* defaultManager;
- (nullable NSURL*)URLForDirectory:(NSSearchPathDirectory)directory
                          inDomain:(NSSearchPathDomainMask)domain
                 appropriateForURL:(nullable NSURL*)url
                            create:(BOOL)shouldCreate
                             error:(NSError* _Nullable __autoreleasing* _Nullable)error;
@end

FOUNDATION_EXPORT NSString* NSUserName(void);
FOUNDATION_EXPORT NSString* NSHomeDirectory(void);

@interface NSThread : NSObject
@property(class, readonly) BOOL isMainThread;
@end

typedef NS_OPTIONS(uint64_t, NSActivityOptions) {
    NSActivityIdleSystemSleepDisabled = (1ULL << 20),
    NSActivityUserInitiated = (0x00FFFFFFULL | NSActivityIdleSystemSleepDisabled),
    NSActivityUserInitiatedAllowingIdleSystemSleep = (NSActivityUserInitiated &
                                                      ~NSActivityIdleSystemSleepDisabled),
};

@interface NSProcessInfo : NSObject
@property(class, readonly, strong) NSProcessInfo* processInfo;
- (id<NSObject>)beginActivityWithOptions:(NSActivityOptions)options reason:(NSString*)reason;
- (void)endActivity:(id<NSObject>)activity;
@end

@interface NSUserDefaults : NSObject
@property(class, readonly, strong) NSUserDefaults* standardUserDefaults;
- (nullable id)objectForKey:(NSString*)defaultName;
- (void)setObject:(nullable id)value forKey:(NSString*)defaultName;
- (void)removeObjectForKey:(NSString*)defaultName;
- (nullable NSDictionary<NSString*, id>*)persistentDomainForName:(NSString*)domainName;
@end

FOUNDATION_EXPORT NSString* const NSAppleScriptErrorMessage;
FOUNDATION_EXPORT NSString* const NSAppleScriptErrorNumber;

@interface NSAppleScript : NSObject <NSCopying>
- (nullable instancetype)initWithSource:(NSString*)source;
- (BOOL)compileAndReturnError:(NSDictionary<NSString*, id>* _Nullable* _Nullable)errorInfo;
- (NSAppleEventDescriptor*)executeAndReturnError:(NSDictionary<NSString*, id>* _Nullable* _Nullable)errorInfo;
@end

@interface NSAppleEventDescriptor : NSObject <NSCopying>
@property(nullable, readonly, copy) NSString* stringValue;
@end

NS_ASSUME_NONNULL_END
