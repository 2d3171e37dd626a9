// The commands of the host. Only the import does work; the others fill fields of the host's record.
#include "plugin/PlugFilterMain.h"

#include <cstring>
#include <string_view>

#include "platform/LocalResources.h"
#include "plugin/ImportDriver.h"
#include "plugin/OwnResources.h"

namespace {

/// Writes a text and its terminating zero, and nothing behind it.
template <size_t N>
void Store(char (&field)[N], std::string_view text) {
    std::memcpy(field, text.data(), text.size());
    field[text.size()] = '\0';
}

std::int32_t Describe(tagPlugFilterInfo* info) {
    if (!info) return PFR_MISSING;
    // Cut to its field: a localised name that is too long must not run into the next one.
    LoadResString(IDS_FILTER_NAME, info->szName, sizeof info->szName);
    Store(info->szFileType, "EPS Files (*.eps)");
    Store(info->szExtension, "eps");
    info->nKind = 2;
    info->nFlags = 265;
    return PFR_HANDLED;
}

std::int32_t Import(tagPlugImportJob* job) {
    if (!job || !job->pList) return PFR_MISSING;
    ImportEpsFile(job, job->pList);
    job->nImported = 0;
    return PFR_HANDLED;
}

std::int32_t Reset(tagPlugImportJob* job) {
    if (!job) return PFR_MISSING;
    job->nReset = 0;
    return PFR_HANDLED;
}

}  // namespace

std::int32_t PlugFilterMain(tagPlugRequest* pRequest) {
    if (!pRequest) return PFR_MISSING;
    switch (pRequest->nCommand) {
        case PFC_QUERY_A:
            pRequest->nResult = 5005;
            return PFR_HANDLED;
        case PFC_QUERY_B:
            pRequest->nResult = 1;
            return PFR_HANDLED;
        case PFC_DESCRIBE:
            return Describe(static_cast<tagPlugFilterInfo*>(pRequest->pRecord));
        case PFC_IMPORT:
            return Import(static_cast<tagPlugImportJob*>(pRequest->pRecord));
        case PFC_RESET:
            return Reset(static_cast<tagPlugImportJob*>(pRequest->pRecord));
        default:
            return PFR_NOT_SERVED;
    }
}
