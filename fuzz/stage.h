// A call on images in guarded memory, compared with a reference in every variant.
#pragma once
#include <algorithm>
#include <functional>
#include <set>
#include <string>
#include <vector>

#include "fuzz/properties.h"
#include "support/guarded_memory.h"
#include "support/image.h"
#include "support/old_caller.h"
#include "support/variants.h"

namespace pxb::test {

using Int = std::int64_t;

// Offsets of the first byte and of the end of what is visited, from the image's data.
struct Span {
    Int first = INT64_MAX, end = INT64_MIN;

    void Add(Int offset, Int bytes) {
        if (bytes <= 0) return;
        first = std::min(first, offset);
        end = std::max(end, offset + bytes);
    }
    bool IsEmpty() const { return first > end; }
    Span operator|(const Span& other) const {
        return {std::min(first, other.first), std::max(end, other.end)};
    }
};

struct Visited {
    Span luma, chroma;  // packed images: all in luma

    Span All() const { return luma | chroma; }
    Visited operator|(const Visited& other) const {
        return {luma | other.luma, chroma | other.chroma};
    }
};

// Where the bytes that a call visits lie between the inaccessible pages.
enum class Placement {
    kFront,   // the first follows a page
    kBack,    // a page follows the last
    kSplit,   // a page follows the last byte of luma, where chroma leaves room for that
    kInside,  // at any alignment
};

// Exports that CallExport has called, by address.
inline std::set<const void*>& CalledExports() {
    static std::set<const void*> called;
    return called;
}

// As old programs call them, with the stack at any multiple of 4.
template <class Result, class... Arguments>
Result CallExport(Result(PXB_CALL* function)(Arguments...),
                  std::type_identity_t<Arguments>... arguments) {
    CalledExports().insert(reinterpret_cast<const void*>(function));
    old_stack = (old_stack + 4) % 16;
    const OldCall<Result> call = CallAsOldProgram(function, arguments...);
    Expect(call.fault.empty(), call.fault);
    return call.result;
}

class Stage {
  public:
    Stage(Placement placement, int content);
    explicit Stage(Bytes& bytes);
    Stage(const Stage&) = delete;
    Stage& operator=(const Stage&) = delete;

    // Gives images their data. The calls to be compared write the ones and may only read the others.
    void Write(ImageBuffer& image, const Visited& visited) { Place(image, visited, true); }
    void Read(ImageBuffer& image, const Visited& visited) { Place(image, visited, false); }

    // `call` must answer what the reference answers, and leave in the memory of the written images,
    // also around them, what the reference leaves there, and no record changed, whatever the
    // floating-point environment, which it keeps. `by_processor`: the bytes depend on the processor.
    void Compare(const std::function<std::int32_t(::Processor)>& reference,
                 const std::function<std::int32_t()>& call, bool by_processor = false);

  private:
    struct Role {
        ImageBuffer* image;
        ImageBuffer record;  // of the image
        class Arena* arena;
        bool written;
    };

    void Place(ImageBuffer& image, const Visited& visited, bool written);
    void Restore() const;
    void Check(const Variant& variant, std::int32_t result, std::int32_t wanted) const;
    std::string Describe(const Variant& variant) const;

    Placement placement_;
    int offset_ = 0, environment_ = 0, content_;
    bool is_plain_ = false;  // what is read is all of one value
    std::vector<Role> roles_;
};

// ---- Arguments ----

int AnyExtent(Bytes& bytes);  // 0 to 200
Size AnySize(Bytes& bytes);   // mostly of few rows
int AnyFormat(Bytes& bytes);  // also unknown ones

// In an image of this size, or now and then outside.
Rect AnyRect(Bytes& bytes, Size size);

// A record of any stride that is large enough, maybe bottom up.
ImageBuffer AnyRecord(Bytes& bytes, int format, Size size, bool may_turn = true);

// Now and then makes a planar record so tall that a page fits between its luma and its chroma.
void MaybeTall(Bytes& bytes, ImageBuffer& image);

// Takes the image its pixels: a negative extent or, where that means something, stride.
void MakeAbsurd(Bytes& bytes, ImageBuffer& image);

inline bool HasPixelsByModel(const ImageBuffer& image) {
    return image.width >= 0 && image.height >= 0 && (image.stride >= 0 || !Is420(image.format));
}

inline bool LiesInByModel(const Rect& r, const ImageBuffer& image) {
    return 0 <= r.left && r.left <= r.right && r.right <= image.width && 0 <= r.top &&
           r.top <= r.bottom && r.bottom <= image.height;
}

}  // namespace pxb::test
