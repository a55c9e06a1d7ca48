// Every export in every variant, called as old programs do.
#include <gtest/gtest.h>

#include <functional>
#include <set>
#include <sstream>

#include "convert/format_pairs.h"
#include "support/image.h"
#include "support/old_caller.h"
#include "support/variants.h"

namespace pxb::test {
namespace {

// Rows of several registers of every kind, and pixels left over.
constexpr Size kSize = {211, 6};

std::set<std::string> called;

template <class Result, class... Arguments>
Result CallOld(const char* name, Result(PXB_CALL* function)(Arguments...),
               std::type_identity_t<Arguments>... arguments) {
    called.insert(name);
    const OldCall<Result> call = CallAsOldProgram(function, arguments...);
    EXPECT_EQ(call.fault, "") << name;
    return call.result;
}
#define PXB_CALL_OLD(function, ...) CallOld(#function, function, __VA_ARGS__)

void Convert() {
    for (const FormatPair pair : PairsThatConvert()) {
        SCOPED_TRACE(NameOf(pair));
        Image src(pair.from, kSize, 1), dst(pair.to, kSize, 2);
        EXPECT_EQ(PXB_CALL_OLD(PxbColorSpaceConv, &dst.record, &src.record), PXB_SUCCESS);
        EXPECT_TRUE(dst.HasChanged());
    }
}

void TakeChannels() {
    for (const PixelFormat format : {PXB_RGB24, PXB_RGB32})
        for (const int channel : {1, 2, 3, 4, 5}) {
            SCOPED_TRACE(testing::Message() << kFormatNames[format] << ", channel " << channel);
            Image src(format, {210, 6}, 1), dst(PXB_RGB8, {210, 6}, 2);
            const bool exists = format == PXB_RGB32 || channel == 1 || channel == 5;
            EXPECT_EQ(PXB_CALL_OLD(PxbChannelGet, &dst.record, &src.record, channel),
                      exists ? PXB_SUCCESS : PXB_UNSUPPORTED);
        }
}

void Blend() {
    for (const PixelFormat format : {PXB_RGB24, PXB_RGB32, PXB_YV12, PXB_YUY2, PXB_I420})
        for (const bool has_alpha : {true, false}) {
            SCOPED_TRACE(testing::Message() << kFormatNames[format] << ", alpha " << has_alpha);
            Image dst(format, kSize, 1), src(format, kSize, 2), alpha(PXB_RGB8, kSize, 3);
            const bool exists = has_alpha || format == PXB_RGB32;
            EXPECT_EQ(PXB_CALL_OLD(PxbAlphaBlend, &dst.record, &src.record,
                                   has_alpha ? &alpha.record : nullptr, nullptr, nullptr),
                      exists ? PXB_SUCCESS : PXB_FAILURE);
            EXPECT_EQ(dst.HasChanged(), exists);
        }
}

void Mirror() {
    constexpr Rect kRect = {2, 0, 208, 4};
    for (int format = PXB_RGB24; format <= PXB_YUV422; ++format) {
        SCOPED_TRACE(kFormatNames[format]);
        Image image(format, {210, 6}, 1);
        EXPECT_EQ(PXB_CALL_OLD(PxbFliphorizontal, &image.record, &kRect),
                  format == PXB_YUV422 ? PXB_UNSUPPORTED : PXB_SUCCESS);
        EXPECT_EQ(PXB_CALL_OLD(PxbFlipvertical, &image.record, nullptr), PXB_SUCCESS);
        EXPECT_TRUE(image.HasChanged());
    }
}

void Turn() {
    for (const PixelFormat format : {PXB_RGB24, PXB_RGB32, PXB_I420})
        for (const int angle : {30, 90, 180, 270}) {
            SCOPED_TRACE(testing::Message() << kFormatNames[format] << ", angle " << angle);
            Image src(format, {140, 140}, 1), dst(format, {140, 140}, 2);
            EXPECT_EQ(PXB_CALL_OLD(PxbRotate, &dst.record, &src.record, angle), PXB_SUCCESS);
            EXPECT_EQ(dst.HasChanged(), format != PXB_I420 || angle != 30);
        }
}

void MakeAndFill() {
    for (int format = 1; format <= kFormats; ++format) {
        SCOPED_TRACE(kFormatNames[format]);
        ImageBuffer image = Describe(format, kSize);
        EXPECT_EQ(PXB_CALL_OLD(PxbNew, &image, 1), PXB_SUCCESS);
        EXPECT_EQ(PXB_CALL_OLD(PxbFillColor, &image, 0x123456),
                  format <= PXB_YUV422 ? PXB_SUCCESS : PXB_BAD_ARGUMENT);
        EXPECT_EQ(PXB_CALL_OLD(PxbDelete, &image), PXB_SUCCESS);
    }
}

void Resize() {
    for (const int format : {PXB_RGB24, PXB_RGB32, PXB_YV12, PXB_YUY2, PXB_I420, PXB_RGB8})
        for (const std::int32_t mode : {0, 1, 2, 6})
            for (const Size size : {Size{140, 4}, Size{430, 8}}) {
                SCOPED_TRACE(testing::Message() << kFormatNames[format] << ", mode " << mode);
                Image src(format, kSize, 1), dst(format, size, 2);
                EXPECT_EQ(PXB_CALL_OLD(PxbResize, &dst.record, &src.record, &mode), PXB_SUCCESS);
                const Rect part = {0, 0, size.width - 4, size.height};
                EXPECT_EQ(
                    PXB_CALL_OLD(PxbResizeEx, &dst.record, &src.record, &mode, &part, nullptr),
                    PXB_SUCCESS);
            }
}

void Locate() {
    const Image image(PXB_RGB32, kSize);
    const ImageBuffer* const record = &image.record;
    EXPECT_EQ(PXB_CALL_OLD(PxbPixelsRGB24, record, 1, 0), record->data + 3);
    EXPECT_EQ(PXB_CALL_OLD(PxbPixelsRGB32, record, 1, 0), record->data + 4);
    EXPECT_EQ(PXB_CALL_OLD(PxbPixelsRGB8, record, 1, 0), record->data + 1);
    EXPECT_EQ(PXB_CALL_OLD(PxbPixelsYV12, record, 2, 0).y, record->data + 1);
    EXPECT_EQ(PXB_CALL_OLD(PxbPixelsI420, record, 2, 0).y, record->data + 1);
    EXPECT_EQ(PXB_CALL_OLD(PxbPixelsYUY2, record, 2, 0).v, record->data + 7);
    EXPECT_EQ(PXB_CALL_OLD(PxbPixelsYUV422, record, 2, 0).u, nullptr);
}

TEST(OldCallers, CanCallEveryExportInEveryVariant) {
    called.clear();
    for (const Variant& variant : RunnableVariants()) {
        SCOPED_TRACE(variant.name);
        const ForcedProcessor forced(variant.words);
        for (const std::uint32_t stack : {8u, 12u, 0u, 4u}) {
            if (stack != 4 && !kHasOldStacks) continue;
            old_stack = stack;
            Convert();
            TakeChannels();
            Blend();
            Mirror();
            Turn();
            MakeAndFill();
            Resize();
            Locate();
        }
    }
    std::istringstream names(PXB_EXPORT_NAMES);
    for (std::string name; names >> name;) EXPECT_TRUE(called.contains(name)) << name;
}

// ---- Functions that the caller should complain about ----

int LeavesX87() {
    __asm__ volatile("fld1");
    return 0;
}
int LeavesMmx() {
    __asm__ volatile(".byte 0x0f, 0x6f, 0xc0");  // movq %mm0, %mm0
    return 0;
}
int SetsDirection() {
    __asm__ volatile("std");
    return 0;
}

TEST(OldCallers, SeeWhatAFunctionLeavesBehind) {
    const auto fault = [](int (*function)()) { return CallAsOldProgram(function).fault; };
    EXPECT_EQ(fault([] { return 0; }), "");
    EXPECT_EQ(fault(LeavesX87), " x87 registers are in use");
    EXPECT_EQ(fault(LeavesMmx), " x87 registers are in use");
    EXPECT_EQ(fault(SetsDirection), " the direction flag is set");
}

#if defined(__i386__)
#define PXB_NAKED(name, code)           \
    __attribute__((naked)) int name() { \
        __asm__(code);                  \
    }
PXB_NAKED(ChangesEbx, "incl %ebx\n ret\n")
PXB_NAKED(ChangesEsi, "incl %esi\n ret\n")
PXB_NAKED(ChangesEdi, "incl %edi\n ret\n")
PXB_NAKED(PopsTooMuch, "ret $4\n")
__attribute__((naked)) std::uint32_t StackPointer() {
    __asm__("movl %esp, %eax\n ret\n");
}

TEST(OldCallers, MisalignTheStackAndSeeWhetherItAndRegistersAreKept) {
    if (!kHasOldStacks) GTEST_SKIP();
    for (const auto function : {ChangesEbx, ChangesEsi, ChangesEdi, PopsTooMuch})
        EXPECT_NE(CallAsOldProgram(function).fault, "");
    for (const std::uint32_t stack : {8u, 12u, 0u, 4u}) {
        old_stack = stack;  // and the call instruction puts 4 bytes there
        EXPECT_EQ((CallAsOldProgram(StackPointer).result + 4) & 15, stack);
    }
}
#endif

}  // namespace
}  // namespace pxb::test
