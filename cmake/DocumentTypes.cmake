# The suffixes of the suite's documents, in the order in which the page lists them. What needs a copy
# (scripts, samples, desktop entries, MIME types, tests) is made from these.
set(OWN_PRESENTATION_SUFFIXES shd shdx sht shtx shds shdo)
set(OWN_SPREADSHEET_SUFFIXES tbl tblx tbt tbtx tbls tblo)
set(OWN_WRITER_SUFFIXES vyr vyrx vyrs vyro vyt vytx)
set(PRESENTATION_SUFFIXES pptx ppt pptm pps pot potm potx ppsx ${OWN_PRESENTATION_SUFFIXES})
set(SPREADSHEET_SUFFIXES xlsx xls xlsm xlt xltm xltx ${OWN_SPREADSHEET_SUFFIXES})
set(WRITER_SUFFIXES docx docm doc dot dotm dotx ${OWN_WRITER_SUFFIXES} rtf)

# The same for the tests and benchmarks, by the short name of each application.
foreach(kind PRESENTATION SPREADSHEET WRITER)
    list(JOIN ${kind}_SUFFIXES "\", \"" ${kind}_SUFFIX_WORDS)
endforeach()
file(CONFIGURE OUTPUT ${CMAKE_BINARY_DIR}/documenttypes.json @ONLY CONTENT [[
{
    "shw": ["@PRESENTATION_SUFFIX_WORDS@"],
    "tbl": ["@SPREADSHEET_SUFFIX_WORDS@"],
    "vyr": ["@WRITER_SUFFIX_WORDS@"]
}
]])
