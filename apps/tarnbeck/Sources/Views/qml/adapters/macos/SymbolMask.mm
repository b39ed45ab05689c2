#include "SymbolMask.h"

#import <AppKit/AppKit.h>

#include <algorithm>
#include <memory>
#include <type_traits>

#include "Symbol.h"

namespace tarnbeck {
namespace {

struct ReleasingContext {
    void operator()(CGContextRef context) const { CGContextRelease(context); }
};
struct ReleasingColorSpace {
    void operator()(CGColorSpaceRef colorSpace) const { CGColorSpaceRelease(colorSpace); }
};
using Context = std::unique_ptr<std::remove_pointer_t<CGContextRef>, ReleasingContext>;
using ColorSpace = std::unique_ptr<std::remove_pointer_t<CGColorSpaceRef>, ReleasingColorSpace>;

// Draws into the memory of `image`, which must be premultiplied and outlive the context.
Context contextOn(QImage& image) {
    const ColorSpace colorSpace(CGColorSpaceCreateWithName(kCGColorSpaceSRGB));
    return Context(CGBitmapContextCreate(
        image.bits(), static_cast<size_t>(image.width()), static_cast<size_t>(image.height()), 8,
        static_cast<size_t>(image.bytesPerLine()), colorSpace.get(),
        static_cast<uint32_t>(kCGImageAlphaPremultipliedFirst) |
            static_cast<uint32_t>(kCGBitmapByteOrder32Little)));
}

// As large as fits into the square in the middle, in the symbol's own proportions.
NSRect fittedRect(NSSize symbol, QSize size) {
    const double side = std::min(size.width(), size.height());
    const double scale = side / std::max(symbol.width, symbol.height);
    const double width = symbol.width * scale;
    const double height = symbol.height * scale;
    return NSMakeRect((size.width() - width) / 2, (size.height() - height) / 2, width, height);
}

NSImage* systemSymbol(const QString& name, double side) {
    NSImage* symbol = [NSImage imageWithSystemSymbolName:name.toNSString()
                                accessibilityDescription:nil];
    if (symbol == nil) return nil;
    NSImageSymbolConfiguration* configuration =
        [NSImageSymbolConfiguration configurationWithPointSize:side weight:NSFontWeightRegular];
    return [symbol imageWithSymbolConfiguration:configuration];
}

}  // namespace

QImage symbolMask(const QString& name, QSize size) {
    if (!isSymbol(name.toStdString())) return {};
    @autoreleasepool {
        NSImage* symbol = systemSymbol(name, std::min(size.width(), size.height()));
        if (symbol == nil || symbol.size.width <= 0 || symbol.size.height <= 0) {
            return drawnSymbolMask(name, size);
        }
        QImage image(size, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        const Context context = contextOn(image);
        if (!context) return drawnSymbolMask(name, size);
        [NSGraphicsContext saveGraphicsState];
        NSGraphicsContext.currentContext =
            [NSGraphicsContext graphicsContextWithCGContext:context.get() flipped:NO];
        [symbol drawInRect:fittedRect(symbol.size, size)
                  fromRect:NSZeroRect
                 operation:NSCompositingOperationSourceOver
                  fraction:1];
        [NSGraphicsContext restoreGraphicsState];
        return image;
    }
}

}  // namespace tarnbeck
