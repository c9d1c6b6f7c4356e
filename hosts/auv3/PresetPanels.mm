// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/auv3/PresetPanels.hpp"

#import <AppKit/AppKit.h>
#import <UniformTypeIdentifiers/UniformTypeIdentifiers.h>

#include <utility>

#include "platform/AtomicFile.hpp"

namespace quillo {

namespace {

Data readPreset(NSURL* url) {
    ::NSError* error = nil;
    NSData* data = [NSData dataWithContentsOfURL:url options:0 error:&error];
    if (data == nil) {
        throw FileError(error.localizedDescription.UTF8String);
    }
    const auto* bytes = static_cast<const std::uint8_t*>(data.bytes);
    return {bytes, bytes + data.length};
}

void writePreset(NSURL* url, std::span<const std::uint8_t> bytes) {
    ::NSError* error = nil;
    NSData* data = [NSData dataWithBytes:bytes.data() length:bytes.size()];
    if (![data writeToURL:url options:NSDataWritingAtomic error:&error]) {
        throw FileError(error.localizedDescription.UTF8String);
    }
}

void show(NSSavePanel* panel, void* view, void (^answered)(NSModalResponse response)) {
    NSWindow* window = ((__bridge NSView*)view).window;
    if (window == nil) {
        [panel beginWithCompletionHandler:answered];
    } else {
        [panel beginSheetModalForWindow:window completionHandler:answered];
    }
}

}  // namespace

void choosePresetToRead(void* view, PresetToRead chosen) {
    const auto kept = std::move(chosen);
    NSOpenPanel* panel = [NSOpenPanel openPanel];
    panel.allowedContentTypes = @[ UTTypeJSON ];
    show(panel, view, ^(NSModalResponse response) {
        if (response == NSModalResponseOK) {
            NSURL* url = panel.URL;
            kept(url.lastPathComponent.UTF8String, [url] { return readPreset(url); });
        }
    });
}

void choosePresetToWrite(void* view, const std::string& suggestedName, PresetToWrite chosen) {
    const auto kept = std::move(chosen);
    NSSavePanel* panel = [NSSavePanel savePanel];
    panel.allowedContentTypes = @[ UTTypeJSON ];
    panel.nameFieldStringValue = @(suggestedName.c_str());
    show(panel, view, ^(NSModalResponse response) {
        if (response == NSModalResponseOK) {
            NSURL* url = panel.URL;
            kept([url](std::span<const std::uint8_t> bytes) { writePreset(url, bytes); });
        }
    });
}

}  // namespace quillo
