// Running programs for tests, and the texts that results are compared as.
#include "support/Program.h"

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <optional>

#include "complete/CompleteDialect.h"
#include "hostout/HostModel.h"
#include "interp/FilterEPS.h"
#include "objects/Sources.h"
#include "support/TestFrame.h"

namespace {

std::string Real(double value) {
    char text[64];
    std::snprintf(text, sizeof text, "%.7g", value);
    std::string result = text;
    if (result.find_first_of(".einf") == std::string::npos) result += ".0";
    return result;
}

std::string TextOf(const CElement& e, int depth = 0) {
    if (const auto* number = As<CNumberElement>(&e)) {
        return number->IsReal() ? Real(number->GetReal()) : std::to_string(number->GetInt());
    }
    if (const auto* string = As<CStringElement>(&e)) {
        std::string text;
        for (const char c : string->GetText()) text += c == '\0' ? std::string("\\000") : std::string(1, c);
        return "(" + text + ")";
    }
    if (const auto* flag = As<CBoolElement>(&e)) return flag->GetValue() ? "true" : "false";
    if (const auto* op = As<COperatorElement>(&e)) return std::string("--") + op->GetName() + "--";
    if (const auto* dict = As<CDictionary>(&e)) return "<<" + std::to_string(dict->GetCount()) + ">>";
    if (const auto* simple = As<CSimpElement>(&e)) {
        if (e.m_nType == ET_MARK) return "mark";
        return (e.m_nType == ET_NAME && !e.m_bExec ? "/" : "") + std::string(simple->GetName());
    }
    if (const auto* array = As<CArrayElement>(&e)) {
        if (depth > 5) return "...";
        std::string text;
        for (int i = 0; i < array->GetLength(); ++i) {
            if (const CElement* item = array->GetAt(i)) text += (i > 0 ? " " : "") + TextOf(*item, depth + 1);
        }
        return e.m_bExec ? "{" + text + "}" : "[" + text + "]";
    }
    switch (e.m_nType) {
        case ET_NULL:
            return "null";
        case ET_FILE:
            return "-file-";
        case ET_FILTER:
            return "-filter-";
        case ET_SAVE:
            return "-save-";
        default:
            return "-gstate-";
    }
}

std::string TextOf(const CElementStack& stack) {
    std::string text;
    for (const CElement* e = stack.Bottom(); e; e = e->m_pNext) text += (text.empty() ? "" : " ") + TextOf(*e);
    return text;
}

std::string Coordinate(float value) {
    char text[48];
    std::snprintf(text, sizeof text, "%.6g", static_cast<double>(value));
    return text;
}

std::string TextOf(const CEntity& entity) {
    char color[16];
    std::snprintf(color, sizeof color, "#%02x%02x%02x", entity.m_nColor & 255u, entity.m_nColor >> 8 & 255u,
                  entity.m_nColor >> 16 & 255u);
    if (entity.GetKind() != ENT_PLINE) return std::string(color) + " other";
    const CSectionList& list = static_cast<const CEntPLine&>(entity).m_Sections;
    std::string text = std::string(color) + (list.IsClosed() ? " closed" : " open");
    for (const CSectObject* section = list.GetFirst(); section; section = section->GetNext()) {
        text += section->GetKind() == SECT_BEZIER ? " B" : " L";
        for (const point_2d& point : section->GetPoints())
            text += " " + Coordinate(point.x) + "," + Coordinate(point.y);
    }
    return text;
}

std::string Text(const tagInputPlace& place) {
    return std::to_string(place.nLine) + ":" + std::to_string(place.nOffset);
}

std::string Text(const tagRunReport& report) {
    constexpr const char* kinds[] = {"", "token", "string", "procedure", "end comment"};
    if (report.nTail == RT_NONE) return "";
    return kinds[report.nTail] + (" " + Text(tagInputPlace{report.nTailLine, report.nTailOffset})) +
           (report.strTail.empty() ? "" : " " + report.strTail);
}

template <class Scan>
RunResult Run(const RunSettings& settings, Scan scan) {
    TestFrame frame;
    RunResult result;
    frame.m_Progress = [&](const tagImportProgress&) {
        return ++result.questions > settings.patience && settings.patience >= 0;
    };
    CEntGroup group;
    {
        CFilterEPS machine(settings.hostVersion, settings.dialect());
        machine.m_nCompileAtEntry = settings.compileAtEntry;
        machine.SetMergeTolerance(settings.mergeTolerance);
        machine.SetFillOutline(settings.fillOutline ? 1 : 0);
        result.result = scan(machine, group);
        result.error = machine.m_nError;
        result.report = machine.m_Report;
        result.stack = TextOf(machine.m_OperandStack);
        result.dictDepth = machine.m_DictStack.GetCount();
        result.gstateDepth = machine.m_GStateStack.GetCount();
    }
    for (CEntity* entity = group.GetFirstChild(); entity;) {
        CEntity* next = entity->m_pNext;
        result.entities.push_back(TextOf(*entity));
        entity->Release();
        delete entity;
        entity = next;
    }
    for (const TestFrame::Box& box : frame.m_Boxes) result.boxes.push_back(box.text);
    return result;
}

}  // namespace

RunResult RunText(std::string_view program, const RunSettings& settings) {
    return Run(settings, [&](CFilterEPS& machine, CEntGroup& group) {
        machine.m_pGroup = &group;
        const int scanned = machine.ScanBuffer(program);
        return scanned == -1 ? machine.Dialect().EndFailedRun(machine) : scanned;
    });
}

RunResult RunAsFile(std::string_view bytes, const RunSettings& settings) {
    std::optional<TempFile> disk;
    if (settings.onDisk) disk.emplace(bytes);
    const int blockSize = settings.blockSize > 0 ? settings.blockSize : CFileBody::BLOCK_SIZE;
    std::string place;
    std::string tail;
    RunResult outcome = Run(settings, [&](CFilterEPS& machine, CEntGroup& group) {
        if (disk) {
            EXPECT_EQ(machine.OpenInputFile(disk->Path().c_str(), blockSize), 1);
        } else {
            machine.OpenInputSource(std::make_unique<CMemorySource>(std::string(bytes)), blockSize);
        }
        const int result = machine.RunFile(&group);
        place = Text(machine.InputPlace());
        tail = Text(machine.m_Report);
        machine.CloseInputFile();
        return result;
    });
    outcome.place = place;
    outcome.tail = tail;
    return outcome;
}

TempFile::TempFile(std::string_view bytes, const char* suffix) {
    std::string path = ::testing::TempDir() + "epsfilterXXXXXX" + suffix;
    const int fd = ::mkstemps(path.data(), static_cast<int>(std::string_view(suffix).size()));
    EXPECT_GE(fd, 0);
    m_Path = path;
    EXPECT_EQ(::write(fd, bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
    ::close(fd);
}

TempFile::~TempFile() { std::remove(m_Path.c_str()); }

namespace {

void CheckStack(const StackCase& c, const RunSettings& settings) {
    const std::string_view program = c.program;
    const RunResult result = RunText(program, settings);
    EXPECT_EQ(result.stack, c.stack);
    EXPECT_EQ(result.error, c.error);
    EXPECT_EQ(result.result, c.error == PSERR_NONE ? 1 : -1);
    if (c.error != PSERR_NONE) return;
    for (const std::string_view asksForDepth : {"count", "clear", "stack", "stopped", "{restore"}) {
        if (program.find(asksForDepth) != std::string_view::npos) return;
    }
    const std::string below = "/below";
    EXPECT_EQ(RunText(below + " " + c.program, settings).stack, below + (*c.stack ? " " : "") + c.stack);
}

}  // namespace

void CheckStacks(std::initializer_list<StackCase> cases, const RunSettings& settings) {
    RunSettings complete = settings;
    complete.dialect = MakeDialect<CCompleteDialect>;
    complete.patience = 60;  // should a row forget to say that the plain dialect alone ends its loop
    for (const StackCase& c : cases) {
        SCOPED_TRACE(std::string(c.name) + ": " + c.program);
        CheckStack(c, settings);
        if (settings.dialect != RunSettings().dialect || std::string_view(c.name).starts_with("departure: ")) continue;
        SCOPED_TRACE("in the complete dialect");
        CheckStack(c, complete);
    }
}

std::string Drawn(std::string_view program, const RunSettings& settings) {
    std::string text;
    for (const std::string& entity : RunText(program, settings).entities) text += (text.empty() ? "" : "\n") + entity;
    return text;
}
