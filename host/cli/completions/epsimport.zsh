#compdef epsimport
# zsh completion for epsimport

_arguments -s -S \
    '(-o --output)'{-o,--output}'[file or directory for the drawing]:path:_files' \
    '(-f --format)'{-f,--format}'[format of the drawing]:format:(json svg dxf none)' \
    '(-t --tolerance)'{-t,--tolerance}'[drop shorter line segments]:mm (0.0001 to 5):' \
    '--no-fill-outline[leave out the outlines of filled areas]' \
    '--host-version[version that the host claims]:version:' \
    "--info[report the file's header comments]" \
    "--complete[import with all of PostScript's operators]" \
    '*--fonts[folder to look for fonts in first]:folder:_files -/' \
    '--lang[language of the texts of the import]:language:(zh en)' \
    '--curves[how curves are written in DXF and SVG]:kind:(spline arc polyline)' \
    '--flatness[tolerance of lines and of chains of arcs]:mm:' \
    '--arc-tolerance[tolerance of one arc for a curve]:mm:' \
    '--dxf[form of DXF]:form:(r2000 r12)' \
    '--dedupe=-[write once what is drawn twice]::what:(contours)' \
    '--join[join contours whose ends lie so near]:mm:' \
    '--check[report what a cutter would trip over]' \
    "--origin[the drawing's origin]:place:(keep corner)" \
    '--scale[factor for the size of the drawing]:factor:' \
    '*--skip-color[leave this colour out]:RRGGBB:' \
    '--report[file for a line of JSON for each input]:file:_files' \
    '(-j --jobs)'{-j,--jobs}'[files imported at the same time]:number:' \
    '--timeout[end each import after this time]:seconds:' \
    '--memory[most memory that one import may take]:MB:' \
    '--allow-file-access[let programs in EPS files use the file system]' \
    '(-q --quiet)'{-q,--quiet}"[don't show message boxes]" \
    '(- *)'{-h,--help}'[show the options]' \
    '(- *)'{-V,--version}'[show the version]' \
    '*:EPS file:_files -g "*.(eps|epsf|epsi|ps)(-.)"'
