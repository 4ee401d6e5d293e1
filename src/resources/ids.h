#pragma once

// The numbers of the program's resources, commands and controls. The resource compiler reads this header too, and it
// knows no constants: hence macros. Files from outside and other programs know the numbers, so none of them changes.

// Icons, accelerators, menus and the picture of the tool bar.
#define kFrameIcon 102
#define kCutIcon 104
#define kAccelerators 105
#define kFrameMenu 103
#define kToolMenu 122
#define kSheetMenu 130
#define kToolBarPicture 118

// The page that plays a film in a browser.
#define kPlayerPage 132

// Commands. A text of the same number is what the status bar shows about one.
#define kCommandExit 40001
#define kCommandAddFrame 40004
#define kCommandInsertFrame 40005
#define kCommandDeleteFrame 40006
#define kCommandPreviousFrame 40007
#define kCommandNextFrame 40008
#define kCommandDeleteCell 40009
#define kCommandInsertCell 40010
#define kCommandAddCell 40011
#define kCommandPreviousCell 40012
#define kCommandNextCell 40013
#define kCommandAddLayer 40014
#define kCommandDeleteLayer 40015
#define kCommandLayerUp 40016
#define kCommandLayerDown 40017
#define kCommandLayerProperties 40022
#define kCommandToSketch 40024
#define kCommandEraseSketch 40025
#define kCommandPlay 40026
#define kCommandStop 40027
#define kCommandUndo 40030
#define kCommandShowPrevious 40032
#define kCommandShowNext 40033
#define kCommandCurrentCellOnly 40034
#define kCommandSnapGrid 40040
#define kCommandFirstFrame 40041
#define kCommandLastFrame 40042
#define kCommandFirstCell 40043
#define kCommandLastCell 40044
#define kCommandMask 40046
#define kCommandAddCutToFilm 40047
#define kCommandInsertCutIntoFilm 40048
#define kCommandRemoveCutFromFilm 40049
#define kCommandNewCut 40050
#define kCommandNewFilm 40051
#define kCommandSaveCutAs 40052
#define kCommandOpenFilm 40053
#define kCommandSaveFilmAs 40054
#define kCommandOpenCut 40056
#define kCommandPlaySelection 40057
#define kCommandBlankCell 40060
#define kCommandCopy 40061
#define kCommandPaste 40062
#define kCommandCut 40063
#define kCommandEraseLayerSketch 40064
#define kCommandSaveLayer 40066
#define kCommandOpenLayer 40067
#define kCommandOverwriteLayer 40068
#define kCommandLayerRamp 40069
#define kCommandMergeDown 40071
#define kCommandFont 40072
#define kCommandSquarePen 40074
#define kCommandExportBitmap 40076
#define kCommandCutProperties 40077
#define kCommandInsertLayer 40080
#define kCommandFilmProperties 40082
#define kCommandExportFilm 40083
#define kCommandStatusBar 40084
#define kCommandToolBar 40085
#define kCommandOverwriteCut 40088
#define kCommandPasteFromClipboard 40091
#define kCommandEraseCell 40092
#define kCommandBrightnessRamp 40093
#define kCommandAddFrames 40094
#define kCommandFocusForward 40095
#define kCommandFocusBackward 40096
#define kCommandDimOthers 40097
#define kCommandMuraRemoval 40099
#define kCommandFrameRamp 40101
#define kCommandLineEmphasis 40102
#define kCommandBlankAll 40103
#define kCommandNextKeyFrame 40104
#define kCommandPreviousKeyFrame 40105
#define kCommandAllKeyFrames 40106
#define kCommandFlipHorizontal 40109
#define kCommandFlipVertical 40110
#define kCommandFrameSize 40112
#define kCommandPreview 40113
#define kCommandAddNumberedCut 40115
#define kCommandInsertNumberedCut 40116
#define kCommandDeleteCuts 40117
#define kCommandRenameCut 40118
#define kCommandOverwriteFilm 40119
#define kCommandCloseAll 40122
#define kCommandCopyToClipboard 40124
#define kCommandRandomDots 40126
#define kCommandDrawGrid 40127
#define kCommandDeleteFrames 40133
#define kCommandExtractCuts 40134
#define kCommandExplainTool 40136
#define kCommandTransparentColor 40137
#define kCommandAbout 40142
#define kCommandSheet 40200
#define kCommandSheetPictures 40201
#define kCommandStepBack 40202
#define kCommandStepForward 40203
#define kCommandOpenVersion 40204
#define kCommandExportAs 40205

// Tools: the numbers of the commands that select them.
#define kToolFramePosition 40019
#define kToolLayerPosition 40023
#define kToolZoom 40028
#define kToolFreePen 40029
#define kToolFill 40031
#define kToolLine 40037
#define kToolCurve 40038
#define kToolRectangle 40045
#define kToolAreaSelect 40059
#define kToolEraser 40065
#define kToolGradient 40070
#define kToolText 40073
#define kToolEdging 40075
#define kToolMosaic 40086
#define kToolFocusLines 40090
#define kToolParallelLines 40132

// Texts of no command: questions, the about box, and three of commands that don't exist any more.
#define kTextStoryboard 40058
#define kTextCircle 40131
#define kTextSearch 40135
#define kTextSaveQuestion 40138
#define kTextCloseAllQuestion 40139
#define kTextDeleteQuestion 40140
#define kTextAbout 40141
#define kTextNotOpened 40240
#define kTextNoFile 40241
#define kTextForeignFile 40242
#define kTextNotReadable 40243
#define kTextReadInPart 40244
#define kTextNoFilm 40245
#define kTextZoom 40246
#define kTextRange 40247
#define kTextEmptyArea 40248
#define kTextNoLayer 40249
#define kTextNoRecordHint 40250
#define kTextBlankHint 40251
#define kTextNoCellHint 40252
#define kTextLayerNameTip 40253
#define kTextWhiteTip 40254
#define kTextFilmTitleTip 40255
#define kTextFilmAuthorTip 40256
#define kTextFontSizeTip 40257
#define kTextFontSpacingTip 40258
#define kTextTextTip 40259
#define kTextFrameCountTip 40260
#define kTextDotGapTip 40261
#define kTextSheetTitle 40210
#define kTextSheetTick 40211
#define kTextSheetFrame 40212
#define kTextSheetNotes 40213
#define kTextSheetSecond 40214
#define kTextSheetStop 40215
#define kTextSheetNoCut 40216
#define kTextExportTitle 40262
#define kTextExportCuts 40263
#define kTextExportPictures 40264
#define kTextExportPage 40265
#define kTextExportSeconds 40266
#define kTextExportMinutes 40267
#define kTextExportStopping 40268
#define kTextExportDone 40269
#define kTextExportStopped 40270
#define kTextExportReplace 40271
#define kTextNotExported 40272
#define kTextCutNotExported 40273
#define kTextFolderTaken 40274
#define kTextNotDeleted 40277
#define kTextNotRenamed 40278
#define kTextNameTaken 40279
#define kTextNotSaved 40280
#define kTextDiskFull 40281
#define kTextReadOnly 40282
#define kTextNoFolder 40283
#define kTextFileInUse 40284
#define kTextFileTooLarge 40285
#define kTextWriteFailed 40286
#define kTextWasDamaged 40287
#define kTextWasForeign 40288
#define kTextRecoverQuestion 40290
#define kTextNoVersions 40291
// A text for each GenerationKind, in its order.
#define kTextSavedVersion 40292
#define kTextDeletedVersion 40293
#define kTextRenamedVersion 40294
#define kTextUnsavedVersion 40295
#define kTextDamagedVersion 40296
#define kTextForeignVersion 40297
#define kTextVersionBytes 40298

// Controls of the frame.
#define kMdiClientId 10001
#define kFrameTimeEdit 10002
#define kCutList 10003
#define kLayerList 10004
#define kLoopEdit 10005
#define kCommentEdit 10006
#define kBrightnessEdit 10007
#define kStatusBarId 10008
#define kKeyFrameCheck 10009
#define kToolBarId 10010

// Dialog templates, each with its controls. A number is entered in an edit that stands before its up-down control; the
// program reads the up-down. Several dialogs share numbers, since a text of help belongs to a number.

#define kLayerDialog 106
#define kLayerNameEdit 1000
#define kLayerWidthEdit 1002
#define kLayerWidthUpDown 1004
#define kLayerHeightEdit 1001
#define kLayerHeightUpDown 1003
#define kLayerFollowCheck 1060

#define kCutDialog 107
#define kCutWidthEdit 1002
#define kCutWidthUpDown 1005
#define kCutHeightEdit 1001
#define kCutHeightUpDown 1006
#define kCutFpsEdit 1041
#define kCutFpsUpDown 1036
#define kCutWholeRadio 1055
#define kCutHalfRadio 1056
#define kCutQuarterRadio 1057
#define kCutCreditEdit 1037

#define kGridDialog 108
#define kGridWidthEdit 1022
#define kGridWidthUpDown 1007
#define kGridHeightEdit 1001
#define kGridHeightUpDown 1008

#define kMaskDialog 109
#define kMaskTransparentCheck 1013
#define kMaskBlackCheck 1009
#define kMaskDarkCheck 1011
#define kMaskLightCheck 1012
#define kMaskWhiteCheck 1010
#define kMaskLineBlackCheck 1017
#define kMaskLineDarkCheck 1018
#define kMaskLineLightCheck 1019
#define kMaskPlus2Check 1046
#define kMaskPlus1Check 1045
#define kMaskMinus1Check 1047
#define kMaskMinus2Check 1048
#define kMaskClearButton 1049
#define kMaskInvertButton 1050

#define kFilmDialog 110
#define kFilmWidthEdit 1002
#define kFilmWidthUpDown 1014
#define kFilmHeightEdit 1001
#define kFilmHeightUpDown 1015
#define kFilmTitleEdit 1039
#define kFilmAuthorEdit 1040

#define kLayerRampDialog 112
#define kRampEndEdit 1065
#define kRampEndUpDown 1026

#define kFontDialog 113
#define kFontNameList 1028
#define kFontSizeEdit 1001
#define kFontSizeUpDown 1033
#define kFontSpacingEdit 1022
#define kFontSpacingUpDown 1029
#define kFontWeightEdit 1042
#define kFontWeightUpDown 1035

#define kTextDialog 114
#define kTextDialogEdit 1034

#define kBrightnessRampDialog 115

#define kFrameCountDialog 116
#define kFrameCountEdit 1001
#define kFrameCountUpDown 1044

#define kFrameRampDialog 117

#define kFrameSizeDialog 123
#define kFrameWidthEdit 1002
#define kFrameWidthUpDown 1005
#define kFrameHeightEdit 1001
#define kFrameHeightUpDown 1006

#define kRenameDialog 126
#define kRenameEdit 1058

#define kRandomDotsDialog 127
#define kDotGapEdit 1001
#define kDotGapUpDown 1061

#define kSearchDialog 128
#define kSearchEdit 1059

#define kVersionDialog 129
#define kVersionList 1066

#define kProgressDialog 131
#define kProgressTitle 1067
#define kProgressGauge 1068
#define kProgressText 1069
#define kProgressTime 1070
