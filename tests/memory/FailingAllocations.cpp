// What becomes of an import when an allocation fails: no crash, nothing left behind, and what was drawn is delivered.
// Each case lets allocation 0, 1, 2, ... fail, until one run succeeds.
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <limits>
#include <memory>
#include <new>
#include <set>
#include <span>
#include <string>
#include <vector>

#include "complete/CompleteDialect.h"
#include "drawing/Check.h"
#include "drawing/FigureReader.h"
#include "drawing/passes/FlattenCurves.h"
#include "drawing/passes/Pipeline.h"
#include "hostout/HostModel.h"
#include "interp/FilterEPS.h"
#include "lib/HostSetup.h"
#include "platform/Dialog.h"
#include "platform/PtrList.h"
#include "platform/Window.h"
#include "plugin/OwnResources.h"
#include "plugin/PlugFilterMain.h"
#include "writers/DxfWriter.h"
#include "writers/JsonWriter.h"
#include "writers/SvgWriter.h"

namespace {

constexpr long NEVER = -1;

/// What operator new does, and what it has seen. Blocks alive are those of the whole process.
struct {
    bool watching = false;
    long made = 0;         ///< while watching
    long failing = NEVER;  ///< the allocation that fails, counted from 0
    bool missed = false;   ///< it was one whose failure is only a loss of speed
    long alive = 0;
    const CEntGroup* drawing = nullptr;
    long drawn = NEVER;  ///< entities of the drawing when the allocation failed
} g_Heap;

long CountChildren(const CEntGroup& group) {
    long count = 0;
    for (const CEntity* child = group.GetFirstChild(); child; child = child->m_pNext) ++count;
    return count;
}

void* Allocate(std::size_t size) {
    if (g_Heap.watching) {
        const long n = g_Heap.made++;
        if (n == g_Heap.failing) {
            if (g_Heap.drawing) g_Heap.drawn = CountChildren(*g_Heap.drawing);
            throw std::bad_alloc();
        }
    }
    void* p = std::malloc(size ? size : 1);
    if (!p) throw std::bad_alloc();
    ++g_Heap.alive;
    return p;
}

void* AllocateOrNull(std::size_t size) noexcept {
    if (g_Heap.watching && g_Heap.made++ == g_Heap.failing) {
        g_Heap.missed = true;
        return nullptr;
    }
    void* p = std::malloc(size ? size : 1);
    if (p) ++g_Heap.alive;
    return p;
}

void Free(void* p) noexcept {
    if (!p) return;
    --g_Heap.alive;
    std::free(p);
}

}  // namespace

void* operator new(std::size_t size) { return Allocate(size); }
void* operator new[](std::size_t size) { return Allocate(size); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return AllocateOrNull(size); }
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept { return AllocateOrNull(size); }
void operator delete(void* p) noexcept { Free(p); }
void operator delete[](void* p) noexcept { Free(p); }
void operator delete(void* p, std::size_t) noexcept { Free(p); }
void operator delete[](void* p, std::size_t) noexcept { Free(p); }

namespace {

/// The host's main window; it allocates nothing itself.
class QuietFrame final : public CFrameWnd {
public:
    QuietFrame() { SetHostMainFrame(this); }
    ~QuietFrame() override { SetHostMainFrame(nullptr); }
    int ShowMessageBox(const char*, const char*, unsigned) override { return IDOK; }
    int RunDialog(CDialog& dialog) override {
        if (m_bAsksForInfo) dialog.PressButton(IDC_FILE_INFO);
        dialog.PressButton(m_nLastButton);
        return dialog.GetResult();
    }
    bool m_bAsksForInfo = false;
    int m_nLastButton = IDOK;
};

/// A file that goes with the object.
class File {
public:
    explicit File(const std::string& bytes) {
        const int fd = ::mkstemp(m_Path.data());
        EXPECT_EQ(::write(fd, bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
        ::close(fd);
    }
    File(const File&) = delete;
    File& operator=(const File&) = delete;
    ~File() { std::remove(m_Path.c_str()); }
    [[nodiscard]] const char* Path() const { return m_Path.c_str(); }

private:
    std::string m_Path = ::testing::TempDir() + "epsmemoryXXXXXX";
};

/// How one run came out.
struct Outcome {
    long delivered = 0;  ///< entities that the host has
    bool thrown = false;
};

/// Imports through the plug-in's door, as a host does.
Outcome ImportFile(const char* path) {
    Outcome outcome;
    CPtrList list;
    tagPlugImportJob job{};
    std::snprintf(job.szPath, sizeof job.szPath, "%s", path);
    job.pList = &list;
    tagPlugRequest request{};
    request.nCommand = PFC_IMPORT;
    request.pRecord = &job;
    g_Heap.watching = true;
    try {
        PlugFilterMain(&request);
    } catch (const std::bad_alloc&) {
        outcome.thrown = true;
    }
    g_Heap.watching = false;
    outcome.delivered = static_cast<long>(list.GetCount());
    for (void* p : list) {
        auto* entity = static_cast<CEntity*>(p);
        entity->Release();
        delete entity;
    }
    return outcome;
}

/// Runs in a machine; where an allocation fails, the drawing must stay as it is at that moment.
using DialectMaker = std::unique_ptr<CDialect> (*)();
Outcome RunFile(const char* path, DialectMaker dialect = MakeLibraryDialect) {
    Outcome outcome;
    CEntGroup group;
    g_Heap.drawing = &group;
    g_Heap.drawn = NEVER;
    g_Heap.watching = true;
    try {
        CFilterEPS machine(5, dialect());
        if (machine.OpenInputFile(path) == 1) machine.RunFile(&group);
        machine.CloseInputFile();
    } catch (const std::bad_alloc&) {
        outcome.thrown = true;
    }
    g_Heap.watching = false;
    g_Heap.drawing = nullptr;
    outcome.delivered = CountChildren(group);
    if (g_Heap.drawn != NEVER) {
        EXPECT_EQ(outcome.delivered, g_Heap.drawn);
    }
    group.DeleteChildren();
    return outcome;
}

/// Lets allocation 0, 1, 2, ... fail until a run succeeds; from `strideFrom` on not each of them, but some hundred.
/// Answers what each run delivered that missed something.
std::vector<long> FailOneByOne(const std::function<Outcome()>& run,
                               long strideFrom = std::numeric_limits<long>::max()) {
    const Outcome whole = run();  // what is made once in a process is made here
    std::vector<long> delivered;
    for (long n = 0;; n += n < strideFrom ? 1 : 1 + (n - strideFrom) / 300) {
        SCOPED_TRACE("allocation " + std::to_string(n));
        const long alive = g_Heap.alive;
        g_Heap.made = 0;
        g_Heap.failing = n;
        g_Heap.missed = false;
        const Outcome outcome = run();
        g_Heap.failing = NEVER;
        EXPECT_EQ(g_Heap.alive, alive) << "blocks left behind";
        if (g_Heap.missed) {
            EXPECT_EQ(outcome.delivered, whole.delivered);
        } else {
            delivered.push_back(outcome.delivered);
        }
        if (g_Heap.made <= n || ::testing::Test::HasFailure()) break;
    }
    EXPECT_EQ(delivered.back(), whole.delivered);
    return delivered;
}

// Touches every family of operators, and every kind of object; draws now and then.
const char* const EVERY_FAMILY = R"(%!PS-Adobe-3.0 EPSF-3.0
%%Title: (Every family)
%%Creator: (this test)
%%CreationDate: (today)
%%BoundingBox: 0 0 100 100
%%LanguageLevel: 2
%%EndComments
/line {newpath 0 0 moveto 9 9 lineto stroke} bind def
line
1 2 exch dup pop 3 1 roll clear mark 1 2 counttomark pop cleartomark
1 2 add 3 mul 4 sub 5 idiv neg abs 2 sqrt exch atan sin ceiling rand pop pop
1 2 eq true and not 3 4 bitshift (a) (b) lt clear
[1 [2 (three)] /four] dup length array copy 0 2 getinterval aload pop clear
[1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18 19 20] cvx cvlit /a /b /c 3 packedarray clear
<< /a 1 >> dup 7 (seven) put begin /a a 1 add def /b 2 dict def b /c [1] put currentdict end {pop pop} forall
30 dict begin 0 1 40 {dup 10 string cvs cvn exch def} for currentdict end length pop
(abc) dup 1 66 put (bc) search clear 100 string pop (1 {2} token) token pop pop pop
0 1 10 {5 eq {exit} if} for 3 {1 pop} repeat {stop} stopped pop
1 cvr cvi (12) cvi 255 16 10 string cvrs /x cvx cvlit type {1} xcheck clear
save /s (string) def [1 2 3] pop gsave restore
line
currentfile /ASCIIHexDecode filter 5 string readstring
48656c6c6f>
clear
currentfile 20 string readline
a line of data
clear currentfile 4 string readhexstring
0aFF0b0c
clear
/T 10 dict dup begin /FontType 3 def /FontMatrix [.01 0 0 .01 0 0] def /FontBBox [0 0 9 9] def
/Encoding 256 array def 0 1 255 {Encoding exch /g put} for
/BuildGlyph {pop pop 500 0 setcharwidth 0 0 moveto 50 50 lineto stroke} def end definefont pop
/T 10 selectfont 5 5 moveto (ab) show 1 1 (c) ashow /Helvetica findfont 12 scalefont setfont (a) stringwidth clear
/F /Font findresource pop
gsave 2 2 scale 30 rotate 1 2 translate [1 0 0 1 0 0] concat matrix currentmatrix matrix invertmatrix pop
[3 1] 0 setdash .5 setgray 1 0 0 setrgbcolor 0 1 0 0 setcmykcolor /DeviceRGB setcolorspace 1 0 1 setcolor
2 setlinewidth 1 setlinecap {} settransfer 60 45 {pop} setscreen gstate currentgstate setgstate
newpath 50 50 20 0 360 arc 0 0 moveto 10 10 20 0 5 arcto clear 1 2 3 4 5 6 curveto
flattenpath reversepath pathbbox clear {} {} {} {} pathforall fill grestore
newpath 0 0 moveto 100 0 rlineto gsave clip grestore strokepath stroke
0 0 10 10 rectfill 0 0 10 10 rectstroke {0 0 5 5 setbbox 0 0 moveto 5 5 lineto} ufill
{0 0 5 5 setbbox 1 1 moveto 5 5 lineto} ustroke
line
<< /PatternType 1 /PaintType 1 /TilingType 1 /BBox [0 0 5 5] /XStep 5 /YStep 5 /PaintProc {pop 0 0 moveto 5 5 lineto stroke} >>
matrix makepattern setpattern 0 0 9 9 rectfill
<< /FormType 1 /BBox [0 0 9 9] /Matrix [1 0 0 1 0 0] /PaintProc {pop 0 0 moveto 9 9 lineto stroke} >> execform
4 4 1 [4 0 0 4 0 0] {<80>} image 2 2 8 [2 0 0 2 0 0] {<01020304>} false 3 colorimage
/CIDInit /ProcSet findresource begin 5 dict begin begincmap endcmap end end
7 [1 2] defineuserobject 7 execuserobject 7 undefineuserobject clear
currentpagedevice << /PageSize [1 1] >> setpagedevice true setglobal [1 2] false setglobal clear
line
showpage
%%EOF
)";

// Touches every family that the complete dialect has beside those. But clips, whose library keeps an allocation that
// fails to itself, and loses blocks; and no encoder is closed, as closing never fails.
const char* const EVERY_COMPLETE_FAMILY = R"(%!PS-Adobe-3.0 EPSF-3.0
%%BoundingBox: 0 0 100 100
%%EndComments
/line {newpath 0 0 moveto 9 9 lineto stroke} bind def
line
{nosuch} stopped {$error /errorname get pop} if clear errordict /typecheck {pop pop} put 1 (a) add clear
{1 {exit} loop} exec {stop} stopped pop 3 {countexecstack pop} repeat
(616263>) /ASCIIHexDecode filter /SubFileDecode filter 9 string readstring clear
{pop pop 9 string} /FlateEncode filter dup (abcabcabc) writestring closefile
<789c4b4c4a06000257 0126> /FlateDecode filter 9 string readstring clear
(abc) << /Filter [] >> /ReusableStreamDecode filter dup 1 setfileposition read clear
currentfile 0 (END) /SubFileDecode filter cvx exec
line
END
<< /a 1 /b [2 (c)] >> << /d 4 >> copy {pop pop} forall matrix defaultmatrix pop 128 string (%%d) cvs clear
/Named {1 2 add} bind def /Named load 0 get pop globaldict begin /g 1 def end true setglobal [1 2] pop false setglobal
gsave 3 setlinewidth [3 2] 0 setdash 0 0 moveto 20 0 lineto 20 20 lineto strokepath newpath
0 0 moveto 5 5 lineto 9 0 lineto closepath 2 2 infill pop clippath pathbbox clear grestore
10 10 5 0 360 arc flattenpath reversepath stroke {0 0 9 9 setbbox 1 1 moveto 5 5 lineto 8 1 lineto} ustrokepath stroke
line
[/Indexed /DeviceRGB 1 <ff000000ff00>] setcolorspace 1 setcolor
[/Separation /Spot /DeviceCMYK {dup 0 exch 0}] setcolorspace .5 setcolor line
[/CIEBasedABC << /WhitePoint [1 1 1] >>] setcolorspace .1 .2 .3 setcolor
<< /PatternType 1 /PaintType 2 /TilingType 1 /BBox [0 0 5 5] /XStep 5 /YStep 5 /PaintProc {pop 0 0 5 5 rectfill} >>
matrix makepattern [/Pattern /DeviceGray] setcolorspace .5 exch setcolor 0 0 9 9 rectfill
/Mine << /CategoryKind 1 >> /Encoding pop pop pop /Own [1 2] /Generic {pop pop pop} exec
/ISOLatin1Encoding findencoding pop << /HalftoneType 1 /Frequency 60 /Angle 45 /SpotFunction {pop} >> sethalftone
/DeviceRGB /ColorSpaceFamily resourcestatus clear (*) {pop} 50 string /Encoding resourceforall
<< /NumCopies 1 >> setpagedevice currentpagedevice /PageSize get pop << /MaxFormItem 1 >> setuserparams
<< /FontType 3 /FontMatrix [.01 0 0 .01 0 0] /FontBBox [0 0 9 9] /Encoding StandardEncoding
/BuildGlyph {pop pop 50 0 0 0 9 9 setcachedevice 0 0 moveto 50 50 lineto stroke} >> /T exch definefont pop
/T 10 selectfont 5 5 moveto (ab) show (ab) true charpath pathbbox clear {pop pop} (ab) kshow [5 5] 0 0 moveto (a) exch xshow
<< /FontType 0 /FMapType 2 /FontMatrix [1 0 0 1 0 0] /Encoding [0] /FDepVector [/T findfont] >> /C exch definefont 9 scalefont
setfont 0 0 moveto <00610062> show
/Helvetica 10 selectfont 5 5 moveto (Ab) show
line
4 4 8 [4 0 0 4 0 0] {<80>} image << /ImageType 1 /Width 2 /Height 2 /BitsPerComponent 8 /Decode [0 1]
/ImageMatrix matrix /DataSource (abcd) >> image
save /s (string) def restore line
)";

/// The program behind a binary header, as a file with a preview is.
std::string WithHeader(const std::string& program) {
    std::string header = "\xC5\xD0\xD3\xC6";
    for (const std::size_t word :
         {std::size_t{30}, program.size(), std::size_t{0}, std::size_t{0}, std::size_t{0}, std::size_t{0}}) {
        for (int shift = 0; shift < 32; shift += 8) header += static_cast<char>(word >> shift & 255);
    }
    return header + "\xFF\xFF" + program;
}

/// What was delivered never shrinks from one failing allocation to the next, and grows on the way.
void ExpectGrowth(const std::vector<long>& delivered) {
    EXPECT_TRUE(std::is_sorted(delivered.begin(), delivered.end()));
    EXPECT_EQ(delivered.front(), 0);
    EXPECT_GT(std::set<long>(delivered.begin(), delivered.end()).size(), 10u);
}

TEST(FailingAllocations, OfARun) {
    QuietFrame frame;
    const File file(EVERY_FAMILY);
    ExpectGrowth(FailOneByOne([&] { return RunFile(file.Path()); }));
}

TEST(FailingAllocations, OfARunInTheCompleteDialect) {
    QuietFrame frame;
    const auto complete = []() -> std::unique_ptr<CDialect> { return std::make_unique<CCompleteDialect>(); };
    const File file(EVERY_COMPLETE_FAMILY);
    ExpectGrowth(FailOneByOne([&] { return RunFile(file.Path(), complete); }, 100));
}

// Figures that all passes change: lines and arcs drawn twice, pieces of contours, curves that are arcs.
std::vector<Figure> FiguresForAllPasses() {
    std::vector<Figure> figures;
    for (int i = 0; i < 12; ++i) {
        Figure line;
        line.color = static_cast<std::uint32_t>(i % 3);
        line.points.push_back({i / 2 * 1.0, 0});
        line.AddLine({i / 2 + 1.0, 0});
        figures.push_back(line);
        Figure quarter;
        quarter.points.push_back({10, i * 1.0});
        quarter.AddCurve({10, i + 0.5522847}, {9.4477153, i + 1.0}, {9, i + 1.0});
        quarter.AddCurve({5, 5}, {7, i * 2.0}, {1, 1});
        figures.push_back(quarter);
        figures.push_back({0, false, {{1, 1}}, {}});
    }
    return figures;
}

TEST(FailingAllocations, OfPassesAndWriters) {
    const std::vector<Figure> figures = FiguresForAllPasses();
    for (const CurveStyle curves : {CurveStyle::Arc, CurveStyle::Polyline}) {
        for (const DoublesStyle doubles : {DoublesStyle::RemoveStretches, DoublesStyle::RemoveContours}) {
            PassSettings settings;
            settings.curves = curves;
            settings.doubles = doubles;
            settings.join = 0.01;
            settings.skippedColors = {2};
            settings.scale = 2;
            settings.origin = Origin::Corner;
            const auto run = [&] {
                Outcome outcome;
                const Drawing drawing;
                g_Heap.watching = true;
                try {
                    std::vector<Figure> result = figures;
                    RunPasses(result, settings);
                    const std::optional<CheckReport> check = CheckDrawing(result, {});
                    if (curves == CurveStyle::Polyline) result = FlattenCurves(std::move(result), 0.01);
                    COutputFile out("/dev/null");
                    WriteSvg(result, out);
                    WriteDxf(result, out);
                    WriteDxfR12(result, out);
                    WriteJson(drawing, result, check, out);
                    outcome.delivered = 1;
                } catch (const std::bad_alloc&) {
                    outcome.thrown = true;
                }
                g_Heap.watching = false;
                return outcome;
            };
            for (const long delivered : FailOneByOne(run, 500)) EXPECT_LE(delivered, 1);
        }
    }
}

TEST(FailingAllocations, OfARunThatFails) {
    QuietFrame frame;
    const File file("%!PS\n0 0 moveto 9 9 lineto stroke 1 [2 {3}] (4) nothing");
    for (const long delivered : FailOneByOne([&] { return RunFile(file.Path()); })) EXPECT_LE(delivered, 1);
}

TEST(FailingAllocations, OfAnImport) {
    QuietFrame frame;
    const File file(WithHeader("%!PS\n1 1 30 {newpath 0 exch moveto 9 9 lineto stroke 9 string pop} for\n"));
    ExpectGrowth(FailOneByOne([&] { return ImportFile(file.Path()); }));
}

TEST(FailingAllocations, OfTheFileAnalysis) {
    QuietFrame frame;
    frame.m_bAsksForInfo = true;
    frame.m_nLastButton = IDCANCEL;
    for (const std::string& bytes : {std::string(EVERY_FAMILY), WithHeader(EVERY_FAMILY), std::string("no program")}) {
        const File file(bytes);
        for (const long delivered : FailOneByOne([&] { return ImportFile(file.Path()); })) EXPECT_EQ(delivered, 0);
    }
}

}  // namespace
