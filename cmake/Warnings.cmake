# Gives a target of this tree its language level and warnings. Warnings are errors where this is the top-level project
# (`cmake --compile-no-warning-as-error` lifts that), so that a newer compiler cannot break somebody else's build.
function(ovxmllib_compile_strictly target)
  set_target_properties(
    ${target} PROPERTIES CXX_STANDARD_REQUIRED ON CXX_EXTENSIONS OFF COMPILE_WARNING_AS_ERROR ${PROJECT_IS_TOP_LEVEL})
  target_compile_features(${target} PRIVATE cxx_std_20)
  target_compile_options(
    ${target}
    PRIVATE -Wall
            -Wextra
            -Wpedantic
            -Wshadow
            -Wconversion
            -Wold-style-cast
            -Wnon-virtual-dtor
            -Woverloaded-virtual)
  # With -O3, g++ 12 sees overlaps and overflows that are not there, as in the standard library's strings (GCC bug
  # 105651).
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    target_compile_options(${target} PRIVATE -Wno-restrict -Wno-stringop-overflow)
  endif()
endfunction()
