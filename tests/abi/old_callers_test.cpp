// Every export, called as old programs do.
#include <gtest/gtest.h>

#include <iterator>
#include <sstream>

#include "fuzz/stage.h"

namespace pxb::test {
namespace {

void Locate() {
    const Image image(PXB_RGB32, {211, 6});
    const ImageBuffer* const record = &image.record;
    EXPECT_EQ(CallExport(PxbPixelsRGB24, record, 1, 0), record->data + 3);
    EXPECT_EQ(CallExport(PxbPixelsRGB32, record, 1, 0), record->data + 4);
    EXPECT_EQ(CallExport(PxbPixelsRGB8, record, 1, 0), record->data + 1);
    EXPECT_EQ(CallExport(PxbPixelsYV12, record, 2, 0).y, record->data + 1);
    EXPECT_EQ(CallExport(PxbPixelsI420, record, 2, 0).y, record->data + 1);
    EXPECT_EQ(CallExport(PxbPixelsYUY2, record, 2, 0).v, record->data + 7);
    EXPECT_EQ(CallExport(PxbPixelsYUV422, record, 2, 0).u, nullptr);
}

// The properties call as old programs do.
TEST(OldCallers, CanCallEveryExport) {
    for (int stack = 0; stack < 4; ++stack) Locate();
    for (const Property& property : Properties())
        for (int trial = 0; trial < 100; ++trial) {
            const auto generated = Generated(trial);
            Bytes bytes(generated);
            ASSERT_NO_THROW(property.check(bytes)) << property.name << ", trial " << trial;
        }
    std::istringstream names(PXB_EXPORT_NAMES);
    EXPECT_EQ(CalledExports().size(), std::distance(std::istream_iterator<std::string>(names), {}));
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
