import JTK

extension JTKTestSuite {
    class func jtkThisFilePath() -> String { return #file }
    
    class func testRecording()
    {
        elements("Button")[0].click()
        elements("Button")[0].click()
        elements("Button")[1].click(doubleClick: true)
        elements("Button")[2].click(modifierFlags: [.maskShift])
        element("Volume").click(offset: NSPoint(-79.0,0.0)).drag(offset: NSPoint(79.0,0.0))
        element("Colour").click().clickMenuItem(title: "Green")
        typeKey(45, flags: [.maskCommand])
        element("FirstName").click(offset: NSPoint(3.0,-2.0))
        typeText("Ada \"Countess\" \\ 😀")
        typeKey(48)
        typeText("Lovelace\r")
    }
}
