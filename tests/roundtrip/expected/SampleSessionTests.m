#import <Foundation/Foundation.h>
#import <JTK/JTK.h>

@implementation JTKTestSuite (SampleSession)
+(NSString *) jtkThisFilePath { return @__FILE__; }
    
+(void) testRecording
{
    [[self elements:@"Button"][0] click];
    [[self elements:@"Button"][0] click];
    [[self elements:@"Button"][1] clickdoubleClick: true];
    [[self elements:@"Button"][2] clickmodifierFlags: (kCGEventFlagMaskShift)];
    [[[self element:@"Volume"] clickWithOffset: NSMakePoint(-79.0,0.0)] dragWithOffset: NSMakePoint(79.0,0.0)];
    [[[self element:@"Colour"] click] clickMenuItemWithTitle: @"Green"];
    [self typeKey: @45 flags: (kCGEventFlagMaskCommand)];
    [[self element:@"FirstName"] clickWithOffset: NSMakePoint(3.0,-2.0)];
    [self typeText: @"Ada \"Countess\" \\ 😀"];
    [self typeKey: @48];
    [self typeText: @"Lovelace\r"];
}
@end
