# Maps a kernel file's suffix to its instruction-set flags. One place, so that every
# family's files are built the same way. Where fused multiply-add exists, contraction is off under
# every compiler: each level must round each product as the portable form does.
function(ombrix_set_isa_flags sources)
  foreach(src IN LISTS sources)
    get_filename_component(name ${src} NAME_WE)
    if(name MATCHES "_avx2$")
      set_source_files_properties(${src} PROPERTIES COMPILE_OPTIONS "-mavx2;-mfma;-mbmi;-mbmi2;-mlzcnt;-mpopcnt;-ffp-contract=off")
    elseif(name MATCHES "_avx$")
      set_source_files_properties(${src} PROPERTIES COMPILE_OPTIONS "-mavx;-mpopcnt")
    elseif(name MATCHES "_sse41$")
      set_source_files_properties(${src} PROPERTIES COMPILE_OPTIONS "-msse4.1")
    elseif(name MATCHES "_ssse3$")
      set_source_files_properties(${src} PROPERTIES COMPILE_OPTIONS "-mssse3")
    elseif(name MATCHES "_sse2$")
      set_source_files_properties(${src} PROPERTIES COMPILE_OPTIONS "-msse2")
    endif()
  endforeach()
endfunction()
