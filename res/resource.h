// The numbers of the program's resources: the one place where each has its number and its name.
// Included by the resource scripts, the program and its tests; scripts in Python read the lines of
// this file.
#pragma once

// The program's icon.
#define IDI_PROGRAM 100

// Menus. Of a dialog or a page, by its keys:
#define IDR_DONE_CANCEL 120
#define IDR_DONE 121
#define IDR_CANCEL 122
// of the views, and of the slide bar, which chooses among them:
#define IDR_FILES 500
#define IDR_APPLICATIONS 501
#define IDR_SLIDE_BAR 502
#define IDR_PROCESSES 503
#define IDR_SYSTEM_STATUS 504
#define IDR_DLLS 505
#define IDR_FILES_MARKING 506
#define IDR_OPEN_FILE 511

// Strips of pictures, each in the sizes of three or two screens.
#define IDB_MAIN_SMALL 1000
#define IDB_MAIN_MIDDLE 1001
#define IDB_MAIN_LARGE 1002
#define IDB_STATUS_SMALL 1005
#define IDB_STATUS_LARGE 1006

// Commands besides IDOK and IDCANCEL. Of Open File:
#define ID_FILTER_APPLICATIONS 550
#define ID_FILTER_ALL_FILES 551
// of the views:
#define ID_SHOW_FILES 600
#define ID_SHOW_APPLICATIONS 601
#define ID_SHOW_PROCESSES 602
#define ID_SHOW_SYSTEM_STATUS 603
#define ID_REFRESH 610
#define ID_RENAME 611
#define ID_DELETE 612
#define ID_HIDE 613
#define ID_PROPERTIES 614
#define ID_STOP 615
#define ID_STOP_ALL 616
#define ID_NEW_FOLDER 617
#define ID_OPEN 618
#define ID_OPEN_WITH 619
#define ID_SHOW_DLLS 620
#define ID_UP 650
#define ID_SELECT 651
#define ID_GO_TO_PROCESS 670
#define ID_GO_TO_MODULE 671
#define ID_SETTINGS 680
// Commands that no menu has, but a key:
#define ID_MARK 652
#define ID_MARK_ALL 653
// Display options; the two spare numbers among them do nothing.
#define ID_SHOW_HIDDEN 687
#define ID_SHOW_SYSTEM 688
#define ID_SHOW_FILE_SIZE 689
#define ID_SHOW_FILE_DATE 690
#define ID_SHOW_IMAGE_PATH 691
#define ID_SHOW_PROCESS_ID 692
#define ID_SHOW_VIRTUAL_MEMORY 693
// Kept on purpose: docs/compatibility.md#spare-options
#define ID_SPARE_OPTION_1 694
#define ID_SPARE_OPTION_2 695
#define ID_SHOW_HIDDEN_APPLICATIONS 696
#define ID_SHOW_CRITICAL_APPLICATIONS 697
#define ID_SHOW_BASE_ADDRESS 698
#define ID_SHOW_SIZE 699
// Languages, one for each item of the menu's list.
#define ID_FIRST_LANGUAGE 36608
#define ID_LAST_LANGUAGE 36863
// Commands whose numbers many programs share.
#define ID_COPY 57634
#define ID_CUT 57635
#define ID_PASTE 57637
#define ID_PASTE_SHORTCUT 57638
#define ID_ABOUT 57664
#define ID_EXIT 57665

// Texts, of which some are only kept.
// Kept on purpose: docs/compatibility.md#spare-texts
// The program's name:
#define IDS_PROGRAM 100
// labels of a box's buttons:
#define IDS_BUTTON_EXIT 130
#define IDS_BUTTON_OK 131
#define IDS_BUTTON_DONE 132
#define IDS_BUTTON_YES 133
#define IDS_BUTTON_NO 134
#define IDS_BUTTON_CANCEL 135
#define IDS_BUTTON_RETRY 136
#define IDS_BUTTON_IGNORE 137
// captions, and what is told when nothing better is known:
#define IDS_UNEXPECTED_ERROR 140
#define IDS_WARNING 141
#define IDS_ERROR 142
#define IDS_SETTINGS 147
// what could not be done:
#define IDS_CANNOT_CREATE_MAIN_WINDOW 150
#define IDS_CANNOT_CREATE_WINDOW 151
#define IDS_ACTION_FAILED 152
#define IDS_EXECUTION_FAILED 200
#define IDS_CANNOT_STOP 220
#define IDS_CANNOT_LIST_PROCESSES 240
#define IDS_CANNOT_KILL 241
#define IDS_CANNOT_LIST_DLLS 245
#define IDS_CANNOT_RENAME 250
#define IDS_CANNOT_CREATE_SHORTCUT 251
#define IDS_CANNOT_READ_CLIPBOARD 252
#define IDS_CANNOT_PASTE 253
#define IDS_FOLDER_IN_THE_WAY 254
#define IDS_FILE_IN_THE_WAY 255
#define IDS_CANNOT_DELETE 256
// questions:
#define IDS_ASK_STOP 350
#define IDS_ASK_KILL 351
#define IDS_ASK_MERGE 352
#define IDS_INTO_ITSELF 353
#define IDS_ASK_OVERWRITE 354
#define IDS_ASK_DELETE_SEVERAL 355
#define IDS_ASK_DELETE_FILE 356
#define IDS_ASK_DELETE_FOLDER 357
#define IDS_ASK_STOP_ALL 358
#define IDS_ASK_CLOSE_APPLICATIONS 359
// titles and rows of the views, names of new entries:
#define IDS_APPLICATIONS_TITLE 800
#define IDS_PROCESSES_TITLE 801
#define IDS_SYSTEM_STATUS_TITLE 802
#define IDS_DLLS_TITLE 803
#define IDS_PROCESS_WITH_ID 810
#define IDS_NOT_ANSWERING 811
#define IDS_NEW_FOLDER 820
#define IDS_NEW_FOLDER_NUMBERED 821
#define IDS_COPY_OF 822
#define IDS_COPY_OF_NUMBERED 823
// what a long operation shows of itself:
#define IDS_COPYING 824
#define IDS_MOVING 825
#define IDS_DELETING 826
#define IDS_ENTRIES_DONE 827
#define IDS_STOPPED_AT 828
#define IDS_OPEN_FILE 945
// the page of a process:
#define IDS_PROCESS_INFORMATION 950
#define IDS_PROCESS_ID 951
#define IDS_THREADS 952
#define IDS_LOAD_ADDRESS 953
#define IDS_VIRTUAL_MEMORY 954
#define IDS_COMMITTED 955
#define IDS_RESERVED 956
#define IDS_HEAPS 957
// of a window:
#define IDS_WINDOW_INFORMATION 960
#define IDS_WINDOW_HANDLE 961
#define IDS_OWNER_PROCESS 962
// of a file or folder:
#define IDS_PROPERTIES 970
#define IDS_TYPE 971
#define IDS_LOCATION 972
#define IDS_SIZE 973
#define IDS_TARGET_TYPE 974
#define IDS_TARGET 975
#define IDS_CREATED 976
#define IDS_MODIFIED 977
#define IDS_ACCESSED 978
#define IDS_ATTRIBUTES 979
#define IDS_READ_ONLY 980
#define IDS_HIDDEN 981
#define IDS_ARCHIVE 982
#define IDS_COMPRESSED 983
#define IDS_ENCRYPTED 984
#define IDS_SYSTEM 985
#define IDS_ROM_MODULE 986
#define IDS_IN_ROM 987
#define IDS_ROM_STATIC_REFERENCE 988
#define IDS_UNKNOWN 989
// units, each a thousand and twenty-four of the one before:
#define IDS_BYTES 990
#define IDS_KILOBYTES 991
#define IDS_MEGABYTES 992
#define IDS_GIGABYTES 993
#define IDS_TERABYTES 994
// languages:
#define IDS_TRANSLATED_BY 996
#define IDS_LANGUAGE 997
#define IDS_ASK_RESTART 998
#define IDS_LANGUAGE_CHANGED 999
// gauges:
#define IDS_BATTERY 1007
#define IDS_MEMORY 1008
#define IDS_STORAGE 1009
#define IDS_PERCENT 1011
#define IDS_CHARGING 1012
#define IDS_FREE_OF 1013
