#include "classify/vision/InferenceEngine.h"

#include <onnxruntime_c_api.h>
#include <QtCore/QLibrary>
#include <QtCore/QtGlobal>

#include "core/base/LibraryFunction.h"
#include "core/files/ShippedFiles.h"

namespace larkspan {

namespace {

// The engine would write an identifier of the machine into its user's cache, and report over the network. It asks this
// variable when it starts; set before main, since other threads may be reading the environment later on.
[[maybe_unused]] const bool reportsNothing = qputenv("ORT_DISABLE_TELEMETRY", "1");

} // namespace

std::filesystem::path shippedInferenceEngine()
{
    return shippedFiles().parent_path().parent_path() / LARKSPAN_ENGINE;
}

tl::expected<const OrtApi *, ModelError> loadInferenceEngine(const std::filesystem::path &library)
{
    const auto failure = [&library](ModelError::Reason reason, std::string detail) {
        return tl::unexpected(ModelError{reason, library, std::move(detail)});
    };
    std::error_code error;
    if (!std::filesystem::is_regular_file(library, error)) {
        return failure(ModelError::Reason::Missing, "there is no such file");
    }
    QLibrary engine(QString::fromStdString(library.string()));
    if (!engine.load()) {
        return failure(ModelError::Reason::Broken, engine.errorString().toStdString());
    }
    decltype(&OrtGetApiBase) base = nullptr;
    if (!findFunction(engine, "OrtGetApiBase", base)) {
        return failure(ModelError::Reason::Broken, "it is no inference engine");
    }
    const OrtApi *api = base()->GetApi(ORT_API_VERSION); // of the headers
    if (api == nullptr) {
        return failure(ModelError::Reason::Broken, "it is too old for this program");
    }
    return api;
}

} // namespace larkspan
