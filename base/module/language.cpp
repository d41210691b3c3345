#include "base/module/language.h"

#include <map>
#include <utility>

#include "base/module/detail/language_choice.h"
#include "base/module/detail/module_file.h"
#include "base/module/module.h"
#include "base/platform/files/files.h"
#include "base/platform/modules/module_loader.h"
#include "base/platform/system/locales.h"
#include "base/platform/system/shell_folders.h"

namespace Oxa_1_1
{

namespace
{

constexpr unsigned short PRIMARY_PART = 0x3FF;

/// The language of each module that was translated. Filled while modules are loaded, one at a time, and there until the
/// last of them is gone: that may be after the end of static objects.
constinit std::map<HINSTANCE, unsigned short>* chosenLanguages = nullptr;

void recordLanguage(HINSTANCE module, unsigned short language)
{
    if (chosenLanguages == nullptr) chosenLanguages = new std::map<HINSTANCE, unsigned short>;
    chosenLanguages->emplace(module, language);
}

/// A file of resources, which is let go of unless it is taken.
class DataFile
{
   public:
    explicit DataFile(HINSTANCE file = nullptr) : m_file(file) {}
    DataFile(DataFile&& other) noexcept : m_file(other.take()) {}
    DataFile& operator=(DataFile&& other) noexcept
    {
        std::swap(m_file, other.m_file);
        return *this;
    }
    DataFile(const DataFile&) = delete;
    DataFile& operator=(const DataFile&) = delete;
    ~DataFile()
    {
        if (m_file != nullptr) platform::freeModule(m_file);
    }

    HINSTANCE get() const { return m_file; }
    HINSTANCE take() { return std::exchange(m_file, nullptr); }

   private:
    HINSTANCE m_file;
};

/// The search for the translation of one module. Every language that it comes by is noted.
class TranslationSearch
{
   public:
    TranslationSearch(TextView modulePath, TextView pattern) : m_pattern(pattern)
    {
        const Text folder(detail::folderOf(modulePath));
        if (folder.empty()) return;
        m_folders.push_back(folder + OXA_TEXT("languages\\"));
        const Text shared = platform::commonProgramFiles();
        if (!shared.empty()) m_folders.push_back(shared + OXA_TEXT("\\") + detail::productFolderOf(modulePath));
    }

    /// Ends at the first language that has a readable file, or that needs none.
    void run(unsigned short langId)
    {
        if (m_folders.empty()) return;
        int previous = -1;
        for (const detail::LanguageCandidate& candidate : detail::languageCandidates(langId))
        {
            const bool isRepeated = std::exchange(previous, candidate.langId) == candidate.langId;
            if (isRepeated)
                note(candidate, LanguageOutcome::REPEATED);
            else if (tryCandidate(candidate))
                return;
        }
    }

    /// Loads what was found, once, for its version, too. What is of another version, or tells none, is not taken.
    void load(TextView modulePath)
    {
        LanguageAttempt* const attempt = found();
        if (attempt == nullptr) return;
        const auto version = detail::fileVersionOf(modulePath);
        if (version) m_file = DataFile(platform::loadDataFile(attempt->path));
        if (m_file.get() != nullptr && version == detail::fileVersionOf(m_file.get())) return;
        attempt->outcome = LanguageOutcome::OTHER_VERSION;
    }

    std::vector<LanguageAttempt>& attempts() { return m_attempts; }
    DataFile& file() { return m_file; }
    /// The attempt that found a file; null when none did.
    LanguageAttempt* found()
    {
        if (m_attempts.empty() || m_attempts.back().outcome != LanguageOutcome::CHOSEN) return nullptr;
        return &m_attempts.back();
    }

   private:
    /// True when it ends the search.
    bool tryCandidate(const detail::LanguageCandidate& candidate)
    {
        if (candidate.langId == BUILT_IN_LANGUAGE)
        {
            note(candidate, LanguageOutcome::BUILT_IN);
            return true;
        }
        if (tryLanguage(candidate)) return true;
        const auto primary = static_cast<unsigned short>(candidate.langId & PRIMARY_PART);
        return primary != candidate.langId && tryLanguage({primary, candidate.source});
    }

    bool tryLanguage(const detail::LanguageCandidate& candidate)
    {
        LanguageAttempt& attempt = note(candidate, LanguageOutcome::NO_ABBREVIATION);
        attempt.abbreviation = platform::languageAbbreviation(candidate.langId);
        if (attempt.abbreviation.empty()) return false;
        attempt.outcome = LanguageOutcome::NO_FILE;
        for (const Text& folder : m_folders)
        {
            attempt.path = folder + fileName(attempt.abbreviation);
            if (!platform::isReadable(attempt.path)) continue;
            attempt.outcome = LanguageOutcome::CHOSEN;
            return true;
        }
        return false;
    }

    LanguageAttempt& note(const detail::LanguageCandidate& candidate, LanguageOutcome outcome)
    {
        return m_attempts.emplace_back(LanguageAttempt{candidate.langId, candidate.source, outcome, {}, {}});
    }

    /// The pattern with the abbreviation for "%ls"; a pattern without it is the name.
    Text fileName(const Text& abbreviation) const
    {
        constexpr TextView PLACE = OXA_TEXT("%ls");
        Text name(m_pattern);
        const std::size_t place = name.find(PLACE);
        return place == Text::npos ? name : name.replace(place, PLACE.size(), abbreviation);
    }

    TextView m_pattern;
    std::vector<Text> m_folders;
    std::vector<LanguageAttempt> m_attempts;
    DataFile m_file;
};

TranslationSearch searchTranslation(TextView modulePath, unsigned short langId)
{
    TranslationSearch search(modulePath, OXA_TEXT("%ls.dll"));
    search.run(langId);
    search.load(modulePath);
    return search;
}

Text longModulePath(HINSTANCE module)
{
    const Text path = platform::moduleFileName(module);
    return path.empty() ? path : platform::longPathName(path);
}

}  // namespace

void detail::forgetLanguageOf(HINSTANCE module)
{
    if (chosenLanguages == nullptr) return;
    chosenLanguages->erase(module);
    if (chosenLanguages->empty()) delete std::exchange(chosenLanguages, nullptr);
}

HINSTANCE LoadTranslationDLL(HINSTANCE module, unsigned short langId)
{
    const Text path = longModulePath(module);
    if (path.empty()) return module;
    TranslationSearch search = searchTranslation(path, langId);
    const LanguageAttempt* const found = search.found();
    if (found == nullptr) return module;

    // The one that was found, which is not always the one that was asked for.
    if (module == platform::programModule()) platform::setControlsLanguage(found->langId);
    recordLanguage(module, found->langId);
    return search.file().take();
}

void FreeTranslationDLL(HINSTANCE module, HINSTANCE translation) noexcept
{
    if (translation != nullptr && translation != module) platform::freeModule(translation);
}

std::vector<LanguageAttempt> TraceTranslation(HINSTANCE module, unsigned short langId)
{
    const Text path = longModulePath(module);
    if (path.empty()) return {};
    return std::move(searchTranslation(path, langId).attempts());
}

unsigned short GetCurrentLangId(const Module& module)
{
    if (chosenLanguages == nullptr) return ANY_LANGUAGE;
    const auto found = chosenLanguages->find(module.getInstance());
    return found != chosenLanguages->end() ? found->second : ANY_LANGUAGE;
}

Text LocateHelpFile(HINSTANCE module, unsigned short, bool plainName)
{
    const Text path = longModulePath(module);
    if (path.empty()) return {};
    // The last period counts wherever it stands.
    const Text manual = path.substr(0, path.rfind('.')) + (plainName ? OXA_TEXT(".pdf") : OXA_TEXT("_ClassicUI.pdf"));
    return platform::isReadable(manual) ? manual : Text();
}

}  // namespace Oxa_1_1
