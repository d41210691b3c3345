#include <wx/dir.h>
#include <wx/filefn.h>
#include <wx/filename.h>

#include "benchmarks/contest.h"
#include "benchmarks/file_samples.h"
#include "benchmarks/path_samples.h"

namespace Oxa_1_1::bench
{

namespace
{

const std::string WX = "wx";

wxArrayString listed(const std::string& folder, const wxString& pattern, int flags)
{
    wxArrayString found;
    wxDir::GetAllFiles(folder, &found, pattern, flags);
    return found;
}

/// Copies what it is led through.
class TreeCopier : public wxDirTraverser
{
   public:
    TreeCopier(const wxString& source, const wxString& target) : m_source(source), m_target(target) {}

    wxDirTraverseResult OnFile(const wxString& file) override
    {
        check(wxCopyFile(file, placeOf(file), false), "wxCopyFile");
        return wxDIR_CONTINUE;
    }
    wxDirTraverseResult OnDir(const wxString& folder) override
    {
        check(wxFileName::Mkdir(placeOf(folder)), "Mkdir");
        return wxDIR_CONTINUE;
    }

   private:
    wxString placeOf(const wxString& path) const { return m_target + path.Mid(m_source.length()); }

    wxString m_source;
    wxString m_target;
};

void copyTree(const wxString& source, const wxString& target)
{
    check(wxFileName::Mkdir(target), "Mkdir");
    TreeCopier copier(source, target);
    wxDir(source).Traverse(copier);
}

[[maybe_unused]] const bool registered = []
{
    constexpr int COLLAPSE_DOTS = wxPATH_NORM_DOTS;
    add(work::PARSE_PATH, WX,
        [path = wxString(UNIX_PATH)]
        {
            wxFileName name = wxFileName::DirName(path, wxPATH_UNIX);
            keep(name.Normalize(COLLAPSE_DOTS, wxString(), wxPATH_UNIX));
        });
    add(work::MAKE_RELATIVE, WX,
        [path = wxFileName::DirName(UNIX_FOLDER, wxPATH_UNIX), reference = wxString(UNIX_REFERENCE)]
        {
            wxFileName relative = path;
            keep(relative.MakeRelativeTo(reference, wxPATH_UNIX));
        });
    addOn(work::LIST_FOLDER, WX, largeFolder,
          [](const FileSample& sample) { keep(listed(sample.path, wxString("*.txt"), wxDIR_FILES | wxDIR_HIDDEN)); });
    addOn(work::LIST_TREE, WX, largeTree,
          [](const FileSample& sample) { keep(listed(sample.path, wxString(), wxDIR_DEFAULT)); });
    addOnFresh(work::COPY_LARGE, WX, largeCopy,
               [](const CopySample& sample)
               { check(wxCopyFile(sample.source.string(), sample.target.string()), "wxCopyFile"); });
    addOnFresh(work::COPY_SMALL, WX, smallCopies,
               [](const CopySample& sample) { copyTree(sample.source.string(), sample.target.string()); });
    addOnFresh(work::REMOVE_SMALL, WX, doomedTree,
               [](const FileSample& sample)
               { check(wxFileName::Rmdir(sample.path.string(), wxPATH_RMDIR_RECURSIVE), "Rmdir"); });
    return true;
}();

}  // namespace

}  // namespace Oxa_1_1::bench
