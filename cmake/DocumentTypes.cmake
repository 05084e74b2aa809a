# The suffixes of the suite's documents, in the order in which the page lists them. What needs a copy
# (scripts, samples, desktop entries, MIME types, tests) is made from these.
set(PRESENTATION_SUFFIXES
    pptx ppt pptm pps pot potm potx ppsx shd shdx sht shtx shds shdo)
set(SPREADSHEET_SUFFIXES
    xlsx xls xlsm xlt xltm xltx tbl tblx tbt tbtx tbls tblo)
set(WRITER_SUFFIXES
    docx docm doc dot dotm dotx vyr vyrx vyrs vyro vyt vytx rtf)
