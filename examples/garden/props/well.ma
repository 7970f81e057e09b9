//Maya ASCII 2018 scene
//Name: well.ma
//Codeset: UTF-8
requires maya "2018";
currentUnit -l meter -a degree -t film;
fileInfo "application" "maya";
createNode transform -n "well";
createNode mesh -n "wellShape" -p "well";
	setAttr -k off ".v";
createNode transform -n "wellRoof" -p "well";
	setAttr ".t" -type "double3" 0 0.018 0 ;
createNode mesh -n "wellRoofShape" -p "wellRoof";
	setAttr -k off ".v";
createNode polyCylinder -n "wellWall";
	setAttr ".r" 0.008;
	setAttr ".h" 0.01;
	setAttr ".sa" 12;
createNode polyCone -n "wellTiles";
	setAttr ".r" 0.01;
	setAttr ".h" 0.006;
	setAttr ".sa" 8;
connectAttr "wellWall.out" "wellShape.i";
connectAttr "wellTiles.out" "wellRoofShape.i";
connectAttr "wellShape.iog" ":initialShadingGroup.dsm" -na;
connectAttr "wellRoofShape.iog" ":initialShadingGroup.dsm" -na;
// End of well.ma
