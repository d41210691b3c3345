// The types that the views for Visual Studio name, for their debug information.

#include "base/filesystem/detail/parsed_directory.h"
#include "base/filesystem/directory.h"
#include "base/filesystem/file.h"
#include "base/filesystem/windows/oxa_windows_file_system_file.h"
#include "base/module/module.h"
#include "base/module/string_resource.h"
#include "base/module/symbol_table.h"
#include "base/object/base_node.h"
#include "base/object/info_string_map.h"
#include "base/object/scan_point.h"

using namespace Oxa_1_1;

template <class... Types>
struct Named
{
    int size = (0 + ... + static_cast<int>(sizeof(Types)));
};

Named<BaseNode, ClassVersion, Directory, File, InfoStringMap, InterlockedCounter, Module, OxaWindowsFileSystemDirectory,
      OxaWindowsFileSystemFile, ScanPtColor<Vec3d<float>>, SmartPtr<BaseNode>, String, StringResource, SymbolTable,
      UTF8Interface, Vec3d<float>, WeakHandle, detail::ParsedDirectory, uZClass>
    named;
