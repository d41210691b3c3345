# What programs cannot write: each expression is tried by one call of the compiler. The first one shows that all around it
# compiles.
if(MSVC)
  return()
endif()

function(oxa_refuse name expression)
  add_test(NAME refused_${name} COMMAND ${CMAKE_CXX_COMPILER} -std=c++20 -fsyntax-only -I${PROJECT_SOURCE_DIR}
    "-DEXPRESSION=${expression}" ${ARGN} ${CMAKE_CURRENT_SOURCE_DIR}/string/refused/refused.cpp)
  set_tests_properties(refused_${name} PROPERTIES WILL_FAIL TRUE)
endfunction()

oxa_refuse(nothing "text << 5")
set_tests_properties(refused_nothing PROPERTIES WILL_FAIL FALSE)
oxa_refuse(pointer "text << &number")
oxa_refuse(added_pointer "text + &number")
oxa_refuse(function "text << main")
oxa_refuse(printf_text "text.printf_apply(OXA_TEXT(\"%s\"), text)")
oxa_refuse(printf_foreign "text.printf_apply(L\"%d %s\", 1, std::wstring())")
oxa_refuse(swapped "String(3, 'x')")
oxa_refuse(swapped_wide "String(number, OXA_TEXT('x'))")
oxa_refuse(swapped_search "text.find(3, 'x')")
# Narrow text with the macro that asks for its code page.
set(strict -DOXA_NO_IMPLICIT_ANSI -include base/filesystem/file.h)
oxa_refuse(nothing_strict "File::fromUTF8(\"a\")->getName() + u8\"a\" << String(\"a\")" ${strict})
set_tests_properties(refused_nothing_strict PROPERTIES WILL_FAIL FALSE)
oxa_refuse(narrow "text << \"a\"" -DOXA_NO_IMPLICIT_ANSI)
oxa_refuse(narrow_path "File::fromString(std::string())" ${strict})
oxa_refuse(narrow_character "text + 'a'" -DOXA_NO_IMPLICIT_ANSI)
