// The language messages that name the steps of a project's history.
#pragma once

enum StepName : int {
    StepAddSection = 3340,
    StepChangeSection = 3341,
    StepDeleteSection = 3342,
    StepAddRecord = 3343,
    StepChangeRecord = 3344,
    StepDeleteRecord = 3345,
    StepChangeProject = 3346,
    StepOrderSections = 3347,
    StepCalculatePositions = 3348,
    StepImportField = 3349,
    StepImportPositions = 3350,
    StepLoadDocument = 3351,
    StepAddPicture = 3352,
    StepChange = 3353,  // of no name
    StepTakeBack = 3354,
    StepDrawPicture = 3356,
    StepResetPicture = 3357,
    StepDeletePicture = 3358,
    StepOrderRecords = 3359,
    StepMend = 3360,
    StepBulkEdit = 3361,
};
