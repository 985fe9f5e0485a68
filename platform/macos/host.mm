#include "platform/macos/mac_services.h"
#include "platform/posix/descriptor.h"
#include "platform/posix/posix_shell.h"
#include "platform/shared/pooled_tool_starter.h"

#import <Foundation/Foundation.h>

namespace corvane {

namespace {

QString applicationSupportFolder() {
    NSURL* folder = [NSFileManager.defaultManager URLForDirectory:NSApplicationSupportDirectory
                                                         inDomain:NSUserDomainMask
                                                appropriateForURL:nil
                                                           create:YES
                                                            error:nil];
    if (folder.path) return QString::fromNSString(folder.path);
    return QString::fromNSString(
        [NSHomeDirectory() stringByAppendingPathComponent:@"Library/Application Support"]);
}

} // namespace

std::unique_ptr<Host> makeHost() {
    @autoreleasepool {
        posix::allowManyDescriptors();
        auto host = std::make_unique<Host>();
        host->userName = QString::fromNSString(NSUserName());
        host->applicationSupport = applicationSupportFolder();
        // The commands name the Mac's own tools: no root stands in front of them.
        host->shell = std::make_unique<PosixShell>(std::string());
        host->tools = std::make_unique<PooledToolStarter>(std::string());
        host->privileged = makeMacPrivilegedRunner();
        host->keychain = makeMacKeychain();
        host->ownerCheck = makeMacOwnerCheck();
        host->defaults = makeMacUserDefaults();
        host->activity = makeMacActivity();
        host->echoSockets = makeMacEchoSockets();
        return host;
    }
}

} // namespace corvane
