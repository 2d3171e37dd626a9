# fish completion for epsimport

complete -c epsimport -f -a '(__fish_complete_suffix .eps; __fish_complete_suffix .epsf; __fish_complete_suffix .epsi; __fish_complete_suffix .ps)'
complete -c epsimport -s o -l output -r -F -d 'File or directory for the drawing'
complete -c epsimport -s f -l format -x -a 'json svg dxf none' -d 'Format of the drawing'
complete -c epsimport -s t -l tolerance -x -d 'Drop shorter line segments, mm'
complete -c epsimport -l no-fill-outline -d 'Leave out the outlines of filled areas'
complete -c epsimport -l host-version -x -d 'Version that the host claims'
complete -c epsimport -l info -d 'Report the header comments of the file'
complete -c epsimport -l complete -d "Import with all of PostScript's operators"
complete -c epsimport -l fonts -x -a '(__fish_complete_directories)' -d 'Folder to look for fonts in first'
complete -c epsimport -l lang -x -a 'zh en' -d 'Language of the texts of the import'
complete -c epsimport -l curves -x -a 'spline arc polyline' -d 'How curves are written in DXF and SVG'
complete -c epsimport -l flatness -x -d 'Tolerance of lines and of chains of arcs, mm'
complete -c epsimport -l arc-tolerance -x -d 'Tolerance of one arc for a curve, mm'
complete -c epsimport -l dxf -x -a 'r2000 r12' -d 'Form of DXF'
complete -c epsimport -l report -r -F -d 'File for a line of JSON for each input'
complete -c epsimport -s j -l jobs -x -d 'Files imported at the same time'
complete -c epsimport -l timeout -x -d 'End each import after this time, seconds'
complete -c epsimport -l memory -x -d 'Most memory that one import may take, MB'
complete -c epsimport -l allow-file-access -d 'Let programs in EPS files use the file system'
complete -c epsimport -s q -l quiet -d "Don't show message boxes"
complete -c epsimport -s h -l help -d 'Show the options'
complete -c epsimport -s V -l version -d 'Show the version'
