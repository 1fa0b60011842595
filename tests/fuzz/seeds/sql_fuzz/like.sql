SELECT * FROM t WHERE s Like('a*') OR s Not Like '[!a-c]?#' OR s In ('x','y') OR d Between .5 And 1e3
